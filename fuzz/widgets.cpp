// The widgets against the HTML that they stand for, spelled out.
#include <algorithm>

#include "feed.hpp"
#include "library.hpp"
#include "oracle.hpp"
#include "tree_model.hpp"

using namespace Quillo;

namespace {

typedef std::vector<std::string> Texts;

// What is expected: HTML, and the reports behind it.
struct Expected {
    std::string html;
    Texts reports;

    std::string Escaped(std::string const& text) { return EscapedModel(text, reports); }
};

std::string Image(std::string const& attributes, std::string const& url) {
    return "<img " + attributes + "src=\"" + url + "\" >";
}

std::string End(std::string const& side, bool isOn, std::string const& width) {
    return "<img alt=\"\" class=\"middle\" height=\"20\" src=\"/images/widgets/nav_bar/" + side +
           (isOn ? "_on" : "_off") + ".gif\" width=\"" + width + "\" >";
}

std::string Padding(std::string const& label) {
    std::size_t const size = label.size();
    std::string const pixels = std::to_string(size > 15 ? 9 : 9 + 6 * ((17 - size) / 2));
    return "padding-left: " + pixels + "px;padding-right: " + pixels + "px;";
}

Expected NavBar(std::vector<Slot> const& slots) {
    Expected expected;
    auto const isOn = [](Slot const& slot) { return slot.selected && !slot.unselectable; };
    expected.html =
        "<div id=\"nav_bar\"><span>" + End("left", !slots.empty() && isOn(slots.front()), "10");
    for (std::size_t i = 0; i < slots.size(); ++i) {
        Slot const& slot = slots[i];
        std::string const state = slot.unselectable ? "unselectable"
                                  : slot.selected   ? "selected"
                                                    : "selectable";
        std::string const place = i == 0 ? " first" : i + 1 == slots.size() ? " last" : "";
        std::string const style = "style=\"" + Padding(slot.text) + "\"";
        bool const isLink = state == "selectable";
        expected.html +=
            "<span class=\"" + state + place + "\"" + (isLink ? "" : " " + style) + ">";
        expected.html += isLink ? "<a href=\"" + slot.link + "\" " + style + ">" : "";
        expected.html += expected.Escaped(slot.text) + (isLink ? "</a>" : "") + "</span>";
    }
    expected.html += End("right", !slots.empty() && isOn(slots.back()), "8") + "</span></div>\n";
    return expected;
}

// The reports of a list of tabs, and the index of the current one.
std::size_t CurrentTab(std::vector<Slot> const& slots, Texts& reports) {
    std::size_t current = slots.size();
    for (std::size_t i = 0; i < slots.size(); ++i) {
        if (slots[i].selected && current != slots.size()) {
            reports.push_back("error: More than one slot selected!");
            return current;
        }
        current = slots[i].selected ? i : current;
        if (slots[i].text.empty()) {
            reports.push_back("error: Slot " + std::to_string(i) + " has no text!");
        }
    }
    if (current == slots.size()) {
        reports.push_back("error: No slot selected!");
        return 0;
    }
    return current;
}

// LT says of the tab to the left whether it is current, RT of the one to the right; the other way
// round in Arabic.
std::string TabImage(std::string const& states, bool isArabic) {
    std::string name = states;
    for (std::size_t at = 0; isArabic && at < name.size(); ++at) {
        name[at] = states[at] == '1' ? '0' : states[at] == '0' ? '1' : states[at];
    }
    std::string url = "/images/tab_set/Tab_";
    for (char const c : name) {
        url += c == '1' ? std::string("on") : c == '0' ? std::string("off") : std::string(1, c);
    }
    return Image("class=\"middle\" ", url + ".gif");
}

Expected Tabs(std::vector<Slot> const& slots, std::string const& content, bool isArabic) {
    Expected expected;
    std::size_t const current = CurrentTab(slots, expected.reports);
    auto const state = [&](std::size_t i) { return std::string(i == current ? "1" : "0"); };
    expected.html =
        "<div id=\"tab_set\">\n<div id=\"tabs\"><img class=\"endCap\" height=\"24\" "
        "src=\"/images/tab_set/Tab_TopBG_R.gif\" width=\"4\" >" +
        TabImage("LT" + state(0), isArabic);
    for (std::size_t i = 0; i < slots.size(); ++i) {
        std::string const label = expected.Escaped(slots[i].text);
        expected.html += "<span class=\"" + std::string(i == current ? "selected" : "selectable") +
                         "\" style=\"top: 1px; padding-bottom: 4px\">";
        expected.html +=
            i == current ? label : "<a href=\"" + slots[i].link + "\">" + label + "</a>";
        expected.html += "</span>";
        bool const isLast = i + 1 == slots.size();
        expected.html +=
            TabImage(isLast ? "RT" + state(i) : "LT" + state(i) + "RT" + state(i + 1), isArabic);
    }
    expected.html += "</div>\n<div class=\"content\" style=\"padding: 10px\">\n" +
                     expected.Escaped(content) + "</div>\n</div>\n";
    return expected;
}

void CheckTitle(std::string const& title) {
    ResetLibrary();
    Expected expected;
    expected.html =
        "<div class=\"breadcrumb allSmall\">\n<h2>\n" + expected.Escaped(title) + "</h2>\n</div>\n";
    ExpectEqual(Html(SmallTitle(title)), expected.html, "SmallTitle: a div around an h2");
    ExpectEqual(Reports(), expected.reports, "SmallTitle: reports what Filter does");
}

void CheckNavBar(std::vector<Slot> const& slots) {
    ResetLibrary();
    Expected const expected = NavBar(slots);
    ExpectEqual(Html(MakeNavBar(slots)), expected.html, "MakeNavBar: a span for each item");
    ExpectEqual(Reports(), expected.reports, "MakeNavBar: reports what Filter does");
}

void CheckTabs(std::vector<Slot> const& slots, std::string const& content, char const* language) {
    ResetLibrary();
    g_language = language;
    Element const text = Text(content, true);
    Element const tabs = MakeTabs(slots, text);
    if (slots.empty()) {
        Expect(tabs.IsNull(), "MakeTabs: no tab, no element");
        ExpectEqual(Reports(), Texts{"error: Empty slots[]!"},
                    "MakeTabs: an empty list is reported");
        return;
    }
    Expected const expected = Tabs(slots, content, std::string(Cstr(language)) == "ar");
    ExpectEqual(Html(tabs), expected.html, "MakeTabs: a row of tabs above the content");
    ExpectEqual(Reports(), expected.reports, "MakeTabs: mistakes of the list are reported");
    Expect(text.impl->parent != nullptr, "MakeTabs: holds the content itself");
}

void CheckTable(unsigned rows, std::string const& tag) {
    ResetLibrary();
    Table table;
    Element const other(boost::shared_ptr<ElementImpl>(new ElementImpl(tag, false)));
    table << other;
    for (unsigned i = 0; i < rows; ++i) {
        other << Table().AddRow();
        ExpectEqual(table.AddRow().impl->tag, std::string("tr"), "Table: a row is a tr");
    }
    ExpectEqual(table.GetNumRows(), static_cast<int>(rows) + (tag == "tr" ? 1 : 0),
                "Table: the direct children tagged tr are counted");
    ExpectEqual(table.impl->children.size(), rows + std::size_t{1}, "Table: a row is a child");
}

}  // namespace

void Check(std::string const& input) {
    Feed feed(input);
    static char const* const languages[] = {nullptr, "ar", "en", "ar-eg", ""};
    char const* const language = languages[feed.Below(5)];
    std::vector<Slot> slots;
    for (unsigned left = feed.Below(6); left > 0; --left) {
        unsigned const state = feed.Byte();
        std::string const text = feed.Text();
        slots.push_back({text, feed.Text(), (state & 1) != 0, (state & 2) != 0});
    }
    unsigned const rows = feed.Below(4);
    std::string const content = feed.Rest();
    CheckNavBar(slots);
    CheckTabs(slots, content, language);
    CheckTitle(content);
    CheckTable(rows, content);
    ResetLibrary();
}
