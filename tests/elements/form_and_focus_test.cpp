// The page rules that are checked while a page is written.
#include "support/page_test.hpp"

using namespace Quillo;

namespace {

typedef std::vector<std::string> Texts;

using FormAndFocusTest = PageTest;
using FormAndFocusGoldenTest = PageTest;

Element Form(std::string const& name) {
    return Tag("form").SetAttr("name", name);
}

Element Input(std::string const& name) {
    return Tag("input", true).SetAttr("name", name).SetFocus();
}

std::string Script(std::string const& reference) {
    return "<script type=\"text/javascript\">document." + reference + ".focus();</script>\n";
}

std::size_t CountScripts(std::string const& html) {
    std::size_t count = 0;
    for (std::size_t at = html.find("<script"); at != std::string::npos;
         at = html.find("<script", at + 1)) {
        ++count;
    }
    return count;
}

TEST_F(FormAndFocusTest, BrokenRulesAreReportedAndThePageIsWrittenAllTheSame) {
    struct Row {
        Element page;
        std::string html;
        std::string format;
        std::string message;
    };
    for (Row const& row : std::vector<Row>{
             {Tag("form"), "<form></form>\n", "%s:  each form must have a name",
              "Render:  each form must have a name"},
             {Tag("form").SetEmptyAttr("name"), "<form name=\"\"></form>\n",
              "%s:  each form must have a name", "Render:  each form must have a name"},
             {Form("f") << Form("g"), "<form name=\"f\">\n<form name=\"g\"></form>\n</form>\n",
              "%s:  can't have nested forms (%s and %s)",
              "Render:  can't have nested forms (f and g)"},
             {Form("f").SetFocus(), "<form name=\"f\"></form>\n", "%s:  forms can't have focus",
              "Render:  forms can't have focus"},
             {Div().SetFocus(), "<div></div>\n", "%s: Element with focus needs to be inside a form",
              "Render: Element with focus needs to be inside a form"},
             {Input("user"), "<input name=\"user\" >\n",
              "%s: Element with focus needs to be inside a form",
              "Render: Element with focus needs to be inside a form"},
             {Form("f") << Div().SetFocus(), "<form name=\"f\">\n<div></div>\n</form>\n",
              "%s: Element with focus needs to have a name",
              "Render: Element with focus needs to have a name"},
             {Form("f") << Div().SetEmptyAttr("name").SetFocus(),
              "<form name=\"f\">\n<div name=\"\"></div>\n</form>\n",
              "%s: Element with focus needs to have a name",
              "Render: Element with focus needs to have a name"},
             {Form("f") << Input("a") << Input("b"),
              "<form name=\"f\">\n<input name=\"a\" >\n<input name=\"b\" >\n</form>\n" +
                  Script("f.a"),
              "%s:  There is more than one element with focus: %s and %s",
              "Render:  There is more than one element with focus: f.a and f.b"}}) {
        Platform() = RecordingPlatform();
        debugMsgs = Div();
        EXPECT_EQ(Html(row.page), row.html);
        ASSERT_EQ(Platform().log.size(), 1U) << row.message;
        LogEntry const& entry = Platform().log[0];
        EXPECT_EQ(entry.level, "error");
        EXPECT_EQ(entry.file, "src/elements/rendering.cpp");
        EXPECT_EQ(entry.format, row.format);
        EXPECT_EQ(entry.message, row.message);
        EXPECT_EQ(DebugLines(), (Texts{"At src/elements/rendering.cpp:" +
                                       std::to_string(entry.line) + ": LOGERROR: " + row.message}));
    }
}

TEST_F(FormAndFocusTest, AFormWithoutNameThatAsksForTheFocusBreaksTwoRules) {
    Html(Tag("form").SetFocus());
    EXPECT_EQ(DebugMessages(), (Texts{"LOGERROR: Render:  each form must have a name",
                                      "LOGERROR: Render:  forms can't have focus"}));
}

TEST_F(FormAndFocusTest, TheFocusScriptFollowsItsForm) {
    EXPECT_EQ(
        Html(Form("f") << (Div() << Input("user"))),
        "<form name=\"f\">\n<div>\n<input name=\"user\" >\n</div>\n</form>\n" + Script("f.user"));
    EXPECT_EQ(Platform().Trace(), "");
}

TEST_F(FormAndFocusTest, AFormWithoutFocusHasNoScript) {
    EXPECT_EQ(Html(Form("f") << Br()), "<form name=\"f\">\n<br >\n</form>\n");
}

TEST_F(FormAndFocusTest, TheScriptEndsItsLineInAOneLineElementToo) {
    isDebug = true;
    EXPECT_EQ(Html(Div() << (Div().SetOneLine() << (Form("f") << Input("u")) << Br())),
              "<div>\n  <div><form name=\"f\"><input name=\"u\" ></form>" + Script("f.u") +
                  "<br ></div>\n</div>\n");
}

TEST_F(FormAndFocusTest, TheScriptFollowsEveryLaterFormAsWell) {
    std::string const html = Html(Div() << Form("e") << (Form("f") << Input("a")) << Form("g"));
    EXPECT_EQ(html,
              "<div>\n<form name=\"e\"></form>\n<form name=\"f\">\n<input name=\"a\" >\n</form>\n" +
                  Script("f.a") + "<form name=\"g\"></form>\n" + Script("f.a") + "</div>\n");
    EXPECT_EQ(Platform().Trace(), "");
}

TEST_F(FormAndFocusTest, TheRestOfAnOuterFormCountsAsOutsideOnceAnInnerOneEnds) {
    Html(Form("f") << Form("g") << Input("a"));
    EXPECT_EQ(DebugMessages(),
              (Texts{"LOGERROR: Render:  can't have nested forms (f and g)",
                     "LOGERROR: Render: Element with focus needs to be inside a form"}));
}

TEST_F(FormAndFocusTest, AnInnerFormsElementsBelongToTheOuterName) {
    EXPECT_EQ(CountScripts(Html(Form("f") << (Form("g") << Input("a")))), 2U);
    EXPECT_NE(Html(Form("f") << (Form("g") << Input("a"))).find("document.f.a.focus()"),
              std::string::npos);
}

TEST_F(FormAndFocusTest, AFormWithAnEmptyNameCountsAsNone) {
    Html(Form("") << Form("g") << Input("a"));
    EXPECT_EQ(DebugMessages(),
              (Texts{"LOGERROR: Render: Element with focus needs to be inside a form"}));
}

TEST_F(FormAndFocusTest, OnlyTheExactTagIsAForm) {
    EXPECT_EQ(Html(Tag("FORM")), "<FORM></FORM>\n");
    EXPECT_EQ(Html(Tag("forms")), "<forms></forms>\n");
    EXPECT_EQ(Platform().Trace(), "");
}

TEST_F(FormAndFocusTest, AFormThatIsALeafEndsWithItsTag) {
    EXPECT_EQ(Html(Div() << Tag("form", true).SetAttr("name", "f") << Input("a")),
              "<div>\n<form name=\"f\" >\n<input name=\"a\" >\n</div>\n");
    EXPECT_EQ(DebugMessages(),
              (Texts{"LOGERROR: Render: Element with focus needs to be inside a form"}));
}

TEST_F(FormAndFocusTest, TheFirstOfThreeFocusElementsWinsAndEachOtherIsReported) {
    std::string const html =
        Html(Div() << (Form("f") << Input("a") << Input("b")) << (Form("g") << Input("c")));
    EXPECT_EQ(DebugMessages(),
              (Texts{"LOGERROR: Render:  There is more than one element with focus: f.a and f.b",
                     "LOGERROR: Render:  There is more than one element with focus: f.a and g.c"}));
    EXPECT_EQ(CountScripts(html), 2U);
}

TEST_F(FormAndFocusTest, FormsAndFocusBelongToThePageBeingWritten) {
    Element const page = Form("f") << Input("a");
    std::string const html = Html(page);
    EXPECT_EQ(Html(page), html) << "a renderer of its own knows nothing of the page before";
}

TEST_F(FormAndFocusGoldenTest, APageWithForms) {
    Element const page = Div() << (Form("login") << Input("user") << Input("password"))
                               << (Form("outer") << Form("inner")) << Form("last");
    ExpectGolden(Html(page), "forms.html");
    isDebug = true;
    ExpectGolden(Html(page), "forms_debug.html");
}

}  // namespace
