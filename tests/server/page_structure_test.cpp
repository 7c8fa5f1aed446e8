#include "server/page_structure.hpp"

#include <gtest/gtest.h>

namespace {

// Of what stands in the body of a page.
std::string Shown(std::string const& html) {
    return StructureOf("<!DOCTYPE html><title>x</title>" + html);
}

std::string Page(std::string const& body) {
    return "html(head(title())body(" + body + "))";
}

TEST(PageStructure, IsThatOfElementsAndAttributes) {
    EXPECT_EQ(Shown("<p class=\"x\">a <a href=\"/log?text=b\">c</a></p>"),
              Page("p class(a href=/log())"));
    EXPECT_EQ(Shown("<br><my-tag q>"), Page("br()my-tag q()"));
    EXPECT_EQ(Shown("text &lt;b&gt;"), Page(""));
}

TEST(PageStructure, ShowsWhatBreaksOutOfAText) {
    std::string const harmless = Shown("<p title=\"a\">a</p><script>f(\"a\")</script>");
    for (char const* html : {
             "<p title=\"a\"><b>a</b></p><script>f(\"a\")</script>",
             "<p title=\"a\" onclick=\"a\">a</p><script>f(\"a\")</script>",
             "<p title=\"a\"><!-- a --></p><script>f(\"a\")</script>",
             "<p title=\"a\">a</p><script>f(\"b\")</script>",
             "<p title=\"a\">a</p><script>f(\"a</script>\")</script>",
         }) {
        EXPECT_NE(Shown(html), harmless) << html;
    }
    EXPECT_EQ(Shown("<p title=\"&quot;b\">&lt;b></p><script>f(\"a\")</script>"), harmless);
    EXPECT_NE(Shown("<a href=\"javascript:f()\">a</a>"), Shown("<a href=\"/f\">a</a>"));
}

TEST(PageStructure, MayLeaveOutRows) {
    std::set<std::string> rows;
    EXPECT_EQ(StructureWithoutRows("<table><tr><td>a<tr><td>b<tr><th>c</table>", rows),
              "html(head()body(table(tbody())))");
    EXPECT_EQ(rows, (std::set<std::string>{"tr(td())", "tr(th())"}));
}

}  // namespace
