// The page as it is written without a library: tags as texts, data in between.
#include <ostream>

#include "page/contender.hpp"
#include "page/escape.hpp"
#include "page/labels.hpp"
#include "page/string_buffer.hpp"

namespace Bench {
namespace {

void WriteNavBar(std::ostream& out, std::vector<std::string> const& labels) {
    out << R"(<div id="nav_bar"><span><img alt="" class="middle" height="20" )"
           R"(src="/images/widgets/nav_bar/left_on.gif" width="10">)";
    for (std::size_t i = 0; i < labels.size(); ++i) {
        std::string const label = Escaped(labels[i]);
        if (i == 0) {
            out << R"(<span class="selected first" style=")" << PaddedStyle(labels[i]) << "\">"
                << label << "</span>";
        } else {
            out << R"(<span class="selectable)" << (i == labels.size() - 1 ? " last" : "")
                << R"("><a href="/)" << label << R"(" style=")" << PaddedStyle(labels[i]) << "\">"
                << label << "</a></span>";
        }
    }
    out << R"(<img alt="" class="middle" height="20" )"
           R"(src="/images/widgets/nav_bar/right_off.gif" width="8"></span></div>)"
        << '\n';
}

void WriteTabs(std::ostream& out, std::vector<std::string> const& labels) {
    out << R"(<div id="tabs"><img class="endCap" height="24" )"
           R"(src="/images/tab_set/Tab_TopBG_R.gif" width="4">)"
           R"(<img class="middle" src="/images/tab_set/Tab_LTon.gif">)";
    for (std::size_t i = 0; i < labels.size(); ++i) {
        std::string const label = Escaped(labels[i]);
        out << R"(<span class=")" << (i == 0 ? "selected" : "selectable")
            << R"(" style="top: 1px; padding-bottom: 4px">)";
        if (i == 0) {
            out << label;
        } else {
            out << R"(<a href="/)" << label << "\">" << label << "</a>";
        }
        out << R"(</span><img class="middle" src=")" << JointBehind(i, labels.size()) << "\">";
    }
    out << "</div>\n";
}

void WriteTable(std::ostream& out, std::vector<Row> const& rows) {
    out << R"(<table class="records" id="interfaces">)" << '\n';
    for (Row const& row : rows) {
        out << R"(<tr id=")" << row.id << R"(" title=")" << row.title << "\">\n";
        for (Cell const& cell : row.cells) {
            out << R"(<td class="value" style=")" << cell.style << "\">" << Escaped(cell.text)
                << "</td>\n";
        }
        out << "</tr>\n";
    }
    out << "</table>\n";
}

void WritePage(std::ostream& out, PageData const& data) {
    out << R"(<div id="page">)" << '\n';
    WriteNavBar(out, data.items);
    out << R"(<div id="tab_set">)" << '\n';
    WriteTabs(out, data.tabs);
    out << R"(<div class="content" style="padding: 10px"><div>)"
           R"(<div class="breadcrumb allSmall"><h2>)"
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
