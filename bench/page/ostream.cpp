// The page as it is written without a library: tags as texts, data in between.
#include <ostream>

#include "page/contender.hpp"
#include "page/escape.hpp"
#include "page/labels.hpp"
#include "page/string_buffer.hpp"

namespace Bench {
namespace {

void WriteNavBar(std::ostream& out, std::vector<std::string> const& labels) {
    out << "<div id=\"nav_bar\">\n<span><img alt=\"\" class=\"middle\" height=\"20\" "
           "src=\"/images/widgets/nav_bar/left_on.gif\" width=\"10\">";
    for (std::size_t i = 0; i < labels.size(); ++i) {
        std::string const label = Escaped(labels[i]);
        if (i == 0) {
            out << "<span class=\"selected first\" style=\"" << PaddedStyle(labels[i]) << "\">"
                << label << "</span>";
        } else {
            out << "<span class=\"selectable" << (i == labels.size() - 1 ? " last" : "")
                << "\"><a href=\"/" << label << "\" style=\"" << PaddedStyle(labels[i]) << "\">"
                << label << "</a></span>";
        }
    }
    out << "<img alt=\"\" class=\"middle\" height=\"20\" "
           "src=\"/images/widgets/nav_bar/right_off.gif\" width=\"8\"></span>\n</div>\n";
}

void WriteTabs(std::ostream& out, std::vector<std::string> const& labels) {
    out << "<div id=\"tabs\"><img class=\"endCap\" height=\"24\" "
           "src=\"/images/tab_set/Tab_TopBG_R.gif\" width=\"4\">"
           "<img class=\"middle\" src=\"/images/tab_set/Tab_LTon.gif\">";
    for (std::size_t i = 0; i < labels.size(); ++i) {
        std::string const label = Escaped(labels[i]);
        out << "<span class=\"" << (i == 0 ? "selected" : "selectable")
            << "\" style=\"top: 1px; padding-bottom: 4px\">";
        if (i == 0) {
            out << label;
        } else {
            out << "<a href=\"/" << label << "\">" << label << "</a>";
        }
        out << "</span><img class=\"middle\" src=\"" << JointBehind(i, labels.size()) << "\">";
    }
    out << "</div>\n";
}

void WriteTable(std::ostream& out, std::vector<Row> const& rows) {
    out << "<table class=\"records\" id=\"interfaces\">\n";
    for (Row const& row : rows) {
        out << "<tr id=\"" << row.id << "\" title=\"" << row.title << "\">\n";
        for (Cell const& cell : row.cells) {
            out << "<td class=\"value\" style=\"" << cell.style << "\">" << Escaped(cell.text)
                << "</td>\n";
        }
        out << "</tr>\n";
    }
    out << "</table>\n";
}

void WritePage(std::ostream& out, PageData const& data) {
    out << "<div id=\"page\">\n";
    WriteNavBar(out, data.items);
    out << "<div id=\"tab_set\">\n";
    WriteTabs(out, data.tabs);
    out << "<div class=\"content\" style=\"padding: 10px\">\n<div>\n"
           "<div class=\"breadcrumb allSmall\">\n<h2>"
        << Escaped(data.title) << "</h2>\n</div>\n";
    WriteTable(out, data.rows);
    out << "</div>\n</div>\n</div>\n</div>\n";
}

class OstreamPage : public Contender {
public:
    void Build(PageData const& data) override { data_ = &data; }

    std::string_view Write() override {
        text_.clear();
        StringBuffer buffer(text_);
        std::ostream stream(&buffer);
        WritePage(stream, *data_);
        return text_;
    }

    void Destroy() override {}

private:
    PageData const* data_ = nullptr;
    std::string text_;
};

}  // namespace

std::unique_ptr<Contender> MakeOstream() {
    return std::make_unique<OstreamPage>();
}

}  // namespace Bench
