// One page with every kind of element, kept as files whose validity is a test of its own.
#include <quillo_kit/elements.hpp>
#include <quillo_kit/safe.hpp>

#include "support/page_test.hpp"

using namespace Quillo;
namespace Kit = QuilloKit;
using Kit::operator<<;
using Kit::SafeAttr;
using Kit::SafeName;
using Kit::SafeStyle;
using Kit::SafeUrl;

namespace {

class KitGoldenTest : public PageTest {};

Element MakeHead() {
    return Kit::Head() << Kit::Meta().SetAttr("charset", "utf-8") << Kit::Title("Fish & <chips>")
                       << Kit::Link()
                              .SetAttr("rel", "stylesheet")
                              .SetAttr("href", SafeUrl("/style.css?a=1&b=2"))
                       << Kit::Style("li > code::after { content: \"</style>\"; }");
}

Element MakeHeader() {
    Element const navigation = Kit::Nav()
                               << (A().SetAttr("href", SafeUrl("javascript:x")).SetOneLine()
                                   << std::string("nowhere"));
    return Kit::Header() << Kit::H1("Every kind") << navigation;
}

Element MakeText() {
    Element const list = Kit::Ul() << Kit::Li("one")
                                   << (Kit::Li() << Kit::Code("a < b") << std::string(" & c"));
    Element const steps = Kit::Ol() << (Kit::Li() << Kit::Strong("first")) << Kit::Li("second");
    Element const when = Kit::P("Since ") << Kit::Time("today").SetAttr("datetime", "2000-01-31")
                                          << Kit::Small(", at least");
    return Kit::Section() << Kit::H3("Text") << list << steps << when
                          << Kit::Pre("\n  two blanks\n\tand a tab\n")
                          << (Kit::Details() << Kit::Summary("More") << Kit::P("of it"));
}

Element MakeTable() {
    Table table;
    Element const widths = Kit::Tr() << Kit::Th("Name").SetAttr("scope", "col")
                                     << Kit::Th("Value").SetAttr("scope", "col");
    table << Kit::Caption("Facts") << (Kit::Thead() << widths);
    table << (Kit::Tbody() << (Kit::Tr()
                               << Kit::Td("mtu").SetAttr("title", SafeAttr("\"'<&>"))
                               << Kit::Td("1500").AddStyle(SafeStyle("text-align", "right"))));
    table << (Kit::Tfoot() << (Kit::Tr() << Kit::Td("sum") << Kit::Td("1500")));
    return Kit::Section() << Kit::H3("Tables") << table;
}

Element MakeFields() {
    Element const user =
        Kit::Label("User ")
        << Kit::Input().SetAttr("type", "text").SetAttr("name", SafeName("user")).SetFocus();
    Element const choice = Kit::Select().SetAttr("name", SafeName("unit"))
                           << Kit::Option("KiB").SetAttr("value", "k")
                           << Kit::Option("MiB").SetAttr("value", "m");
    Element const note = Kit::Textarea("\n<b>\r\n  two").SetAttr("name", SafeName("note"));
    return Kit::Fieldset() << Kit::Legend("Login") << (Kit::P() << user)
                           << (Kit::P() << (Kit::Label("Unit ") << choice))
                           << (Kit::P() << (Kit::Label("Note ") << note))
                           << Kit::Button("Go").SetAttr("type", "submit");
}

Element MakeForm() {
    Element const gauges =
        Kit::P() << (Kit::Label("Load ") << Kit::Meter("half").SetAttr("value", "0.5"))
                 << (Kit::Label("Done ") << Kit::Progress("a third").SetAttr("value", "0.33"));
    Element const form =
        Kit::Form().SetAttr("name", SafeName("login")).SetAttr("action", SafeUrl("/login?a=1&b=2"))
        << MakeFields();
    return Kit::Section() << Kit::H3("Forms") << form << gauges;
}

Element WholePage() {
    std::string const call = "show(" + Kit::JsString("</script>\n\"'") + ");";
    Element const body = Kit::Body()
                         << MakeHeader() << (Kit::Main() << MakeText() << MakeTable() << MakeForm())
                         << (Kit::Aside() << Kit::P("Beside")) << (Kit::Footer() << Kit::P("Below"))
                         << Kit::Script(call);
    return Kit::Group() << Kit::Doctype()
                        << (Kit::Html().SetAttr("lang", "en") << MakeHead() << body);
}

TEST_F(KitGoldenTest, AWholePage) {
    ExpectGolden(Html(WholePage()), "kit_page.html");
}

TEST_F(KitGoldenTest, AWholePageInDebugMode) {
    isDebug = true;
    ExpectGolden(Html(WholePage()), "kit_page_debug.html");
}

}  // namespace
