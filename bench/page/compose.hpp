// The page's structure, element by element, for a library that has no widgets.
#ifndef QUILLO_BENCH_PAGE_COMPOSE_HPP
#define QUILLO_BENCH_PAGE_COMPOSE_HPP

#include "page/contender.hpp"
#include "page/labels.hpp"

namespace Bench {

// `Sink` has Open(tag), Attribute(name, value), Text(text), Close() and Leaf(tag), which opens what
// `CloseLeaf` closes.
template <class Sink>
void ComposeImage(Sink& sink, char const* url) {
    sink.Leaf("img");
    sink.Attribute("class", "middle");
    sink.Attribute("src", url);
    sink.CloseLeaf();
}

template <class Sink>
void ComposeBarEnd(Sink& sink, char const* url, char const* width) {
    sink.Leaf("img");
    sink.Attribute("alt", "");
    sink.Attribute("class", "middle");
    sink.Attribute("height", "20");
    sink.Attribute("src", url);
    sink.Attribute("width", width);
    sink.CloseLeaf();
}

template <class Sink>
void ComposeNavBar(Sink& sink, std::vector<std::string> const& labels) {
    sink.Open("div");
    sink.Attribute("id", "nav_bar");
    sink.Open("span");
    ComposeBarEnd(sink, "/images/widgets/nav_bar/left_on.gif", "10");
    for (std::size_t i = 0; i < labels.size(); ++i) {
        std::string const style = PaddedStyle(labels[i]);
        std::string const place = i == 0 ? " first" : i == labels.size() - 1 ? " last" : "";
        sink.Open("span");
        sink.Attribute("class", (i == 0 ? "selected" : "selectable") + place);
        if (i == 0) {
            sink.Attribute("style", style);
            sink.Text(labels[i]);
        } else {
            sink.Open("a");
            sink.Attribute("href", "/" + labels[i]);
            sink.Attribute("style", style);
            sink.Text(labels[i]);
            sink.Close();
        }
        sink.Close();
    }
    ComposeBarEnd(sink, "/images/widgets/nav_bar/right_off.gif", "8");
    sink.Close();
    sink.Close();
}

template <class Sink>
void ComposeTabs(Sink& sink, std::vector<std::string> const& labels) {
    sink.Open("div");
    sink.Attribute("id", "tabs");
    sink.Leaf("img");
    sink.Attribute("class", "endCap");
    sink.Attribute("height", "24");
    sink.Attribute("src", "/images/tab_set/Tab_TopBG_R.gif");
    sink.Attribute("width", "4");
    sink.CloseLeaf();
    ComposeImage(sink, "/images/tab_set/Tab_LTon.gif");
    for (std::size_t i = 0; i < labels.size(); ++i) {
        sink.Open("span");
        sink.Attribute("class", i == 0 ? "selected" : "selectable");
        sink.Attribute("style", "top: 1px; padding-bottom: 4px");
        if (i == 0) {
            sink.Text(labels[i]);
        } else {
            sink.Open("a");
            sink.Attribute("href", "/" + labels[i]);
            sink.Text(labels[i]);
            sink.Close();
        }
        sink.Close();
        ComposeImage(sink, JointBehind(i, labels.size()));
    }
    sink.Close();
}

template <class Sink>
void ComposeTable(Sink& sink, std::vector<Row> const& rows) {
    sink.Open("table");
    sink.Attribute("class", "records");
    sink.Attribute("id", "interfaces");
    for (Row const& row : rows) {
        sink.Open("tr");
        sink.Attribute("id", row.id);
        sink.Attribute("title", row.title);
        for (Cell const& cell : row.cells) {
            sink.Open("td");
            sink.Attribute("class", "value");
            sink.Attribute("style", cell.style);
            sink.Text(cell.text);
            sink.Close();
        }
        sink.Close();
    }
    sink.Close();
}

template <class Sink>
void Compose(Sink& sink, PageData const& data) {
    sink.Open("div");
    sink.Attribute("id", "page");
    ComposeNavBar(sink, data.items);
    sink.Open("div");
    sink.Attribute("id", "tab_set");
    ComposeTabs(sink, data.tabs);
    sink.Open("div");
    sink.Attribute("class", "content");
    sink.Attribute("style", "padding: 10px");
    sink.Open("div");
    sink.Open("div");
    sink.Attribute("class", "breadcrumb allSmall");
    sink.Open("h2");
    sink.Text(data.title);
    sink.Close();
    sink.Close();
    ComposeTable(sink, data.rows);
    sink.Close();
    sink.Close();
    sink.Close();
    sink.Close();
}

}  // namespace Bench

#endif
