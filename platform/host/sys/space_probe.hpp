// How full a file system is, asked in a way that never hangs.
#ifndef QUILLO_HOST_SYS_SPACE_PROBE_HPP
#define QUILLO_HOST_SYS_SPACE_PROBE_HPP

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace QuilloHost {

// In bytes.
struct Space {
    std::uint64_t size;
    std::uint64_t used;
    std::uint64_t available;  // to an ordinary user
};

// The space of the file system that holds `place`, from statvfs(3); nothing when it does not tell.
// Takes as long as the file system does: one on a network may take for ever.
std::optional<Space> AskFileSystem(std::string const& place) noexcept;

// Asks each file system on a thread of its own, and gives it up when it takes longer than
// `patience`. One that was given up is not asked again until its thread has come back, so that no
// more than one thread hangs on each.
class SpaceProbe {
public:
    typedef std::optional<Space> (*Ask)(std::string const& place) noexcept;

    SpaceProbe(Ask ask, std::chrono::milliseconds patience);

    // Nothing when the file system does not tell, or not in time. Throws std::bad_alloc.
    std::optional<Space> SpaceAt(std::string const& place);

private:
    class Places;

    Ask ask_;
    std::chrono::milliseconds patience_;
    std::shared_ptr<Places> asked_;  // shared with the threads, which may outlast the probe
};

}  // namespace QuilloHost

#endif
