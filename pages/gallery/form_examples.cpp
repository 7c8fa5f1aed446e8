// The kit's elements for forms. None of these changes anything: they are sent to the gallery.
#include <quillo_kit/elements.hpp>
#include <quillo_kit/safe.hpp>

#include "example.hpp"

using namespace Quillo;
using namespace QuilloKit;

namespace Pages {
namespace {

Element Fields() {
    Form form;
    form.SetAttr("name", SafeName("fields")).SetAttr("action", SafeUrl("/widgets"));
    form << (P() << (Label("Name ") << Input()
                                           .SetAttr("type", "text")
                                           .SetAttr("name", "host")
                                           .SetAttr("value", "gate")));
    form << (P() << (Label("Closed ") << Input()
                                             .SetAttr("type", "text")
                                             .SetAttr("name", "closed")
                                             .SetEmptyAttr("disabled")));
    form << (P() << (Label("Note ") << Textarea("two\n  lines").SetAttr("name", "note")));
    form << Button("Send").SetAttr("type", "submit");
    return form;
}

Element Choices() {
    Form form;
    form.SetAttr("name", SafeName("choices")).SetAttr("action", SafeUrl("/widgets"));
    form << (Fieldset() << Legend("Speed")
                        << (Label()
                            << Input().SetAttr("type", "radio").SetAttr("name", "speed") << "slow ")
                        << (Label() << Input()
                                           .SetAttr("type", "radio")
                                           .SetAttr("name", "speed")
                                           .SetEmptyAttr("checked")
                                    << "fast"));
    form << (P() << (Label() << Input().SetAttr("type", "checkbox").SetAttr("name", "loud")
                             << "Loud"));
    form << (P() << (Label("Colour ")
                     << (Select().SetAttr("name", "colour")
                         << Option("red") << Option("green").SetEmptyAttr("selected"))));
    form << Button("Send").SetAttr("type", "submit").SetEmptyAttr("disabled");
    return form;
}

Element Amounts() {
    return Group() << (P() << (Label("Used ")
                               << Meter("30 %").SetAttr("max", "100").SetAttr("value", "30")))
                   << (P() << (Label("Done ")
                               << Progress("7 of 9").SetAttr("max", "9").SetAttr("value", "7")));
}

}  // namespace

ExampleGroup FormExamples() {
    return {
        "Forms", false, {QUILLO_EXAMPLE(Fields), QUILLO_EXAMPLE(Choices), QUILLO_EXAMPLE(Amounts)}};
}

}  // namespace Pages
