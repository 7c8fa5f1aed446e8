// The kit's elements for text. Those of a document as a whole are the page around them.
#include <quillo_kit/elements.hpp>
#include <quillo_kit/safe.hpp>

#include "example.hpp"

using namespace Quillo;
using namespace QuilloKit;

namespace Pages {
namespace {

Element Parts() {
    return Section() << (Header() << H3("A part of a page"))
                     << (Nav().SetAttr("aria-label", "Elsewhere")
                         << (A().SetAttr("href", SafeUrl("/status")).SetOneLine() << "Status"))
                     << P("What it is about.")
                     << (Aside().SetAttr("aria-label", "Remark") << P("Said in passing."))
                     << (Footer() << Small("The end."));
}

Element Lists() {
    return Group() << (Ul() << Li("a < b") << (Li() << Strong("mtu") << " 1500"))
                   << (Ol() << Li("first") << Li("second"));
}

Element Phrases() {
    return P("Since ") << Time("May").SetAttr("datetime", "2026-05") << " the command "
                       << Code("quillo-serve --help") << Strong(" lists") << Small(" nearly")
                       << " everything.";
}

Element WhiteSpace() {
    return Pre("one\n  two <set in>\n\tthree");
}

Element ToOpen() {
    return Group() << (Details() << Summary("Closed") << P("Seen once it is opened."))
                   << (Details().SetEmptyAttr("open") << Summary("Open") << P("Seen at once."));
}

Element LinesAndSpaces() {
    return P("One line") << Br() << "and another, with a space that does not" << Nbsp() << "break";
}

}  // namespace

ExampleGroup TextExamples() {
    return {"Text",
            false,
            {QUILLO_EXAMPLE(Parts), QUILLO_EXAMPLE(Lists), QUILLO_EXAMPLE(Phrases),
             QUILLO_EXAMPLE(WhiteSpace), QUILLO_EXAMPLE(ToOpen), QUILLO_EXAMPLE(LinesAndSpaces)}};
}

}  // namespace Pages
