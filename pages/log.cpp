// The log page: entries of the device log, the newest first, by level and text. The argument
// "before" is where older ones are to be found, a place in the log that stays what it is while the
// log grows.
#include <quillo_kit/elements.hpp>
#include <quillo_kit/safe.hpp>

#include <algorithm>

#include "frame.hpp"
#include "record_table.hpp"

using namespace Quillo;
using namespace QuilloKit;
using QuilloServer::Request;

namespace Pages {
namespace {

char const path[] = "/log";

// A level, the phrase for an entry of it, and that for all entries that it lets through.
struct Level {
    char const* name;
    char const* entry;
    char const* entries;
};

Level const levels[] = {{"info", "Information", "All entries"},
                        {"warning", "Warning", "Warnings and errors"},
                        {"error", "Error", "Errors"}};

// What the reader asks for: the arguments of the request, and of the object "log".
struct Search {
    std::string level = levels[0].name;
    std::string text = {};
    std::string before = "end";
};

// An entry of the log, by the attributes below. The last one is none: its offset is where older
// ones are to be found.
typedef std::vector<std::string> Entry;
enum Attribute { Offset, Time, Process, LevelName, Source, Message };

std::string Argument(Request const& request, char const* name) {
    auto const found = request.arguments.find(name);
    return found != request.arguments.end() ? found->second : "";
}

// Takes what is an argument of this page, and leaves out what is not.
Search AskedSearch(Request const& request) {
    Search search;
    for (Level const& level : levels) {
        search.level = Argument(request, "level") == level.name ? level.name : search.level;
    }
    search.text = Argument(request, "text");
    std::string const before = Argument(request, "before");
    bool const isPlace =
        !before.empty() && before.find_first_not_of("0123456789") == std::string::npos;
    search.before = isPlace ? before : search.before;
    return search;
}

int Query(Request& request, Search const& search, std::vector<Entry>& entries) {
    return GetObject(request.app, ObjectType_Sys,
                     "log " + search.level + " " + search.before + " " + search.text,
                     {"offset", "time", "process", "level", "source", "text"}, entries);
}

Element MakeLevels(Request& request, Search const& search) {
    Select choice;
    choice.SetAttr("name", "level");
    for (Level const& level : levels) {
        Element const option = Option().SetAttr("value", level.name)
                               << Phrase(request, level.entries);
        if (search.level == level.name) {
            option.impl->emptyAttrs.insert("selected");
        }
        choice << option;
    }
    return choice;
}

Element MakeForm(Request& request, Search const& search) {
    Form form;
    form.SetAttr("name", "search").SetAttr("method", "get").SetAttr("action", path);
    form.SetAttr("class", "card search").SetAttr("role", "search");
    form << (Label() << (Span() << Phrase(request, "Level")) << MakeLevels(request, search));
    form << (Label() << (Span() << Phrase(request, "Text"))
                     << Input()
                            .SetAttr("type", "search")
                            .SetAttr("name", "text")
                            .SetAttr("maxlength", "200")
                            .SetAttr("value", SafeAttr(search.text)));
    return form << (Button().SetAttr("type", "submit") << Phrase(request, "Show"));
}

// "2024-05-01T12:30:05.123+02:00" as "2024-05-01 12:30:05".
Element MakeTime(std::string const& time) {
    std::string shown = time.substr(0, 19);
    std::replace(shown.begin(), shown.end(), 'T', ' ');
    return Isolated(shown).SetAttr("class", "quantity").SetAttr("title", SafeAttr(time));
}

Element MakeLevel(Request& request, std::string const& name) {
    TextTag word("span");
    for (Level const& level : levels) {
        if (name == level.name) {
            return word.SetAttr("class", name) << Phrase(request, level.entry);
        }
    }
    return word << Phrase(request, "Other");
}

Element MakeMessage(Entry const& entry) {
    Group message;
    message << Isolated(entry[Message]);
    if (!entry[Source].empty()) {
        message << (Div().SetAttr("class", "beside").SetOneLine()
                    << Isolated(entry[Source] + " [" + entry[Process] + "]"));
    }
    return message;
}

Element MakeEntries(Request& request, std::vector<Entry> const& entries) {
    if (entries.empty()) {
        return P() << Phrase(request, "There is no such entry in this part of the log.");
    }
    RecordList list(request, {"Time", "Level", "Message"});
    for (Entry const& entry : entries) {
        list.Add({MakeTime(entry[Time]), MakeLevel(request, entry[LevelName]), MakeMessage(entry)});
    }
    return list.Section("Entries");
}

Element MakeLink(Request& request, Search const& search, std::string const& before,
                 char const* phrase) {
    std::string const arguments =
        "level=" + search.level + "&text=" + PcntEncode(search.text) + before;
    return A().SetAttr("href", SafeUrl(AppendUriArgs(path, arguments))) << Phrase(request, phrase);
}

// To older entries, and from them back to the newest.
Element MakeLinks(Request& request, Search const& search, std::string const& rest) {
    P links;
    links.SetAttr("class", "links");
    if (search.before != "end") {
        links << MakeLink(request, search, "", "Newest entries");
    }
    if (rest != "0") {
        links << MakeLink(request, search, "&before=" + rest, "Older entries");
    }
    return links.impl->children.empty() ? Element(Group()) : Element(links);
}

void WriteLog(Request& request, std::ostream& out) {
    Search const search = AskedSearch(request);
    Group content;
    content << MakeForm(request, search);
    std::vector<Entry> entries;
    if (Query(request, search, entries) != 0 || entries.empty()) {
        content << (P() << Phrase(request,
                                  "The log cannot be shown here: it is not kept in a file. The "
                                  "option --log-file of the page server names one."));
    } else {
        std::string const rest = entries.back()[Offset];
        entries.pop_back();
        content << MakeEntries(request, entries) << MakeLinks(request, search, rest);
    }
    WriteFramed(request, out, "log", content);
}

QuilloServer::Page const page("log", "Log", 5, WriteLog);

}  // namespace
}  // namespace Pages
