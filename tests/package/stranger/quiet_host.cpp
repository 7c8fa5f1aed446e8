// The stand-alone platform's set-up, by its one header: the page is all that is of interest.
#include <host/host.hpp>

namespace {

bool const isQuiet = (QuilloHost::SetLogThreshold(QuilloHost::LogLevel::Error), true);

}  // namespace
