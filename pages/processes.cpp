// The processes page: what runs on this machine, by the memory it takes.
#include "frame.hpp"
#include "quantities.hpp"
#include "record_table.hpp"

using QuilloServer::Request;

namespace Pages {
namespace {

void WriteProcesses(Request& request, std::ostream& out) {
    WriteFramed(request, out, "processes",
                RecordTable(request, "Processes by memory", "processes",
                            {{"pid", "PID", nullptr},
                             {"name", "Name", nullptr},
                             {"state", "State", nullptr},
                             {"rss_bytes", "Memory", Bytes},
                             {"threads", "Threads", nullptr}}));
}

QuilloServer::Page const processes("processes", "Processes", 3, WriteProcesses);

}  // namespace
}  // namespace Pages
