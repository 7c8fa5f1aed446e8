// The processes page: what runs on this machine, by the memory it takes.
#include "frame.hpp"
#include "quantities.hpp"
#include "record_table.hpp"

using QuilloServer::Request;

namespace Pages {
namespace {

// What a letter of ps(1) says, as a phrase.
std::string StateOf(std::string const& letter) {
    struct State {
        char const* letter;
        char const* phrase;
    };
    static State const states[] = {
        {"R", "Running"}, {"S", "Sleeping"}, {"D", "Waiting for a device"},
        {"I", "Idle"},    {"T", "Stopped"},  {"t", "Stopped by a debugger"},
        {"Z", "Ended"},   {"X", "Ended"}};
    for (State const& state : states) {
        if (letter == state.letter) {
            return state.phrase;
        }
    }
    return "Not known";
}

void WriteProcesses(Request& request, std::ostream& out) {
    WriteFramed(request, out, "processes",
                RecordTable(request, "Processes by memory", "processes",
                            {{"pid", "PID", nullptr},
                             {"name", "Name", nullptr},
                             {"state", "State", StateOf, true},
                             {"rss_bytes", "Memory", Bytes},
                             {"threads", "Threads", nullptr}}));
}

QuilloServer::Page const processes("processes", "Processes", 3, WriteProcesses);

}  // namespace
}  // namespace Pages
