// The storage page: how full the file systems of this machine are.
#include <quillo_kit/elements.hpp>
#include <quillo_kit/safe.hpp>

#include <algorithm>
#include <optional>

#include "frame.hpp"
#include "quantities.hpp"
#include "record_table.hpp"

using namespace Quillo;
using namespace QuilloKit;
using QuilloServer::Request;

namespace Pages {
namespace {

// A record of the object "storage", by the attributes below.
typedef std::vector<std::string> FileSystem;

std::vector<FileSystem> Query(Request& request) {
    std::vector<FileSystem> all;
    GetObject(request.app, ObjectType_Sys, "storage",
              {"mount", "device", "type", "size", "used", "available"}, all);
    std::sort(all.begin(), all.end(), [](FileSystem const& left, FileSystem const& right) {
        return IsLessUtf8Collate(left[0], right[0]);
    });
    return all;
}

// The meter and its text; the text alone says what is known of a file system that tells no figures.
Element MakeUse(Request& request, std::string const& used, std::string const& available) {
    Group use;
    std::optional<int> const percent = PercentUsed(used, available);
    if (!percent) {
        return use << Phrase(request, "Not known");
    }
    std::string const text = std::to_string(*percent) + " %";
    use << Meter(text)
               .SetAttr("min", "0")
               .SetAttr("max", "100")
               .SetAttr("low", "75")
               .SetAttr("high", "90")
               .SetAttr("optimum", "0")
               .SetAttr("value", std::to_string(*percent))
               .SetAttr("aria-label", SafeAttr(Translated(request, "Used")));
    return use << (Span().SetAttr("class", "beside").SetOneLine()
                   << Isolated(text + " · " + Bytes(used)));
}

void WriteStorage(Request& request, std::ostream& out) {
    RecordList list(request, {"Mounted at", "Device", "Type", "Size", "Used", "Available"});
    for (FileSystem const& one : Query(request)) {
        list.Add({Isolated(one[0]), Isolated(one[1]), Isolated(one[2]), Isolated(Bytes(one[3])),
                  MakeUse(request, one[4], one[5]), Isolated(Bytes(one[5]))});
    }
    WriteFramed(request, out, "storage", list.Section("File systems"));
}

QuilloServer::Page const storage("storage", "Storage", 4, WriteStorage);

}  // namespace
}  // namespace Pages
