// The tree is a dictionary: a section for each item, tab, row and cell, whose values stay where
// they are. The template is read once.
#include <ctemplate/template.h>
#include <ctemplate/template_string.h>

#include "page/contender.hpp"
#include "page/labels.hpp"

namespace Bench {
namespace {

char const source[] =
    R"(<div id="page"><div id="nav_bar"><span>)"
    R"(<img alt="" class="middle" height="20" )"
    R"(src="/images/widgets/nav_bar/left_on.gif" width="10">)"
    R"({{#SELECTED}}<span class="selected first" style="{{STYLE}}">{{TEXT:h}}</span>{{/SELECTED}})"
    R"({{#ITEM}}<span class="selectable{{PLACE}}"><a href="/{{TEXT:h}}" style="{{STYLE}}">)"
    R"({{TEXT:h}}</a></span>{{/ITEM}})"
    R"(<img alt="" class="middle" height="20" )"
    R"(src="/images/widgets/nav_bar/right_off.gif" width="8">)"
    R"(</span></div><div id="tab_set"><div id="tabs">)"
    R"(<img class="endCap" height="24" src="/images/tab_set/Tab_TopBG_R.gif" width="4">)"
    R"(<img class="middle" src="/images/tab_set/Tab_LTon.gif">)"
    R"({{#CURRENT}}<span class="selected" style="top: 1px; padding-bottom: 4px">{{TEXT:h}}</span>)"
    R"(<img class="middle" src="{{JOINT}}">{{/CURRENT}})"
    R"({{#TAB}}<span class="selectable" style="top: 1px; padding-bottom: 4px">)"
    R"(<a href="/{{TEXT:h}}">{{TEXT:h}}</a></span><img class="middle" src="{{JOINT}}">{{/TAB}})"
    R"(</div><div class="content" style="padding: 10px"><div><div class="breadcrumb allSmall">)"
    R"(<h2>{{TEXT:h}}</h2></div><table class="records" id="interfaces">)"
    R"({{#ROW}}<tr id="{{ID}}" title="{{TITLE}}">)"
    R"({{#CELL}}<td class="value" style="{{STYLE}}">{{TEXT:h}}</td>{{/CELL}}</tr>{{/ROW}})"
    R"(</table></div></div></div></div>)";

ctemplate::StaticTemplateString const selected = STS_INIT(selected, "SELECTED");
ctemplate::StaticTemplateString const item = STS_INIT(item, "ITEM");
ctemplate::StaticTemplateString const place = STS_INIT(place, "PLACE");
ctemplate::StaticTemplateString const current = STS_INIT(current, "CURRENT");
ctemplate::StaticTemplateString const tab = STS_INIT(tab, "TAB");
ctemplate::StaticTemplateString const joint = STS_INIT(joint, "JOINT");
ctemplate::StaticTemplateString const row = STS_INIT(row, "ROW");
ctemplate::StaticTemplateString const cell = STS_INIT(cell, "CELL");
ctemplate::StaticTemplateString const id = STS_INIT(id, "ID");
ctemplate::StaticTemplateString const title = STS_INIT(title, "TITLE");
ctemplate::StaticTemplateString const style = STS_INIT(style, "STYLE");
ctemplate::StaticTemplateString const text = STS_INIT(text, "TEXT");

void FillNavBar(ctemplate::TemplateDictionary& page, std::vector<std::string> const& labels) {
    for (std::string const& label : labels) {
        bool const isFirst = &label == &labels.front();
        ctemplate::TemplateDictionary& slot = *page.AddSectionDictionary(isFirst ? selected : item);
        slot.SetValueWithoutCopy(text, label);
        slot.SetValue(style, PaddedStyle(label));
        if (&label == &labels.back()) {
            slot.SetValueWithoutCopy(place, " last");
        }
    }
}

void FillTabs(ctemplate::TemplateDictionary& page, std::vector<std::string> const& labels) {
    for (std::size_t i = 0; i < labels.size(); ++i) {
        ctemplate::TemplateDictionary& slot = *page.AddSectionDictionary(i == 0 ? current : tab);
        slot.SetValueWithoutCopy(text, labels[i]);
        slot.SetValueWithoutCopy(joint, JointBehind(i, labels.size()));
    }
}

void FillRow(ctemplate::TemplateDictionary& line, Row const& data) {
    line.SetValueWithoutCopy(id, data.id);
    line.SetValueWithoutCopy(title, data.title);
    for (Cell const& value : data.cells) {
        ctemplate::TemplateDictionary& field = *line.AddSectionDictionary(cell);
        field.SetValueWithoutCopy(style, value.style);
        field.SetValueWithoutCopy(text, value.text);
    }
}

class CtemplatePage : public Contender {
public:
    void Build(PageData const& data) override {
        page_ = std::make_unique<ctemplate::TemplateDictionary>("page");
        page_->SetValueWithoutCopy(text, data.title);
        FillNavBar(*page_, data.items);
        FillTabs(*page_, data.tabs);
        for (Row const& line : data.rows) {
            FillRow(*page_->AddSectionDictionary(row), line);
        }
    }

    std::string_view Write() override {
        text_.clear();
        template_->Expand(&text_, page_.get());
        return text_;
    }

    void Destroy() override { page_.reset(); }

private:
    std::unique_ptr<ctemplate::Template> template_{
        ctemplate::Template::StringToTemplate(source, sizeof source - 1, ctemplate::DO_NOT_STRIP)};
    std::unique_ptr<ctemplate::TemplateDictionary> page_;
    std::string text_;
};

}  // namespace

std::unique_ptr<Contender> MakeCtemplate() {
    return std::make_unique<CtemplatePage>();
}

}  // namespace Bench
