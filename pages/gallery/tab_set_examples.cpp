// Tab sets: each tab current in turn, and so every image between tabs.
#include <quillo_kit/elements.hpp>

#include "example.hpp"

using namespace Quillo;
using namespace QuilloKit;

namespace Pages {
namespace {

Element OneTab() {
    return MakeTabs({{"One", "/status", true, false}}, P("The only one"));
}

Element TwoTabs() {
    return Group() << MakeTabs({{"One", "/status", true, false}, {"Two", "/network", false, false}},
                               P("The first is current"))
                   << MakeTabs({{"One", "/status", false, false}, {"Two", "/network", true, false}},
                               P("The second is current"));
}

Element ThreeTabs() {
    Group sets;
    for (std::size_t current = 0; current < 3; ++current) {
        std::vector<Slot> tabs = {{"One", "/status", false, false},
                                  {"Two", "/network", false, false},
                                  {"Three", "/storage", false, false}};
        tabs[current].selected = true;
        sets << MakeTabs(tabs, P(tabs[current].text));
    }
    return sets;
}

}  // namespace

ExampleGroup TabSetExamples() {
    return {"Tab sets",
            true,
            {QUILLO_EXAMPLE(OneTab), QUILLO_EXAMPLE(TwoTabs), QUILLO_EXAMPLE(ThreeTabs)}};
}

}  // namespace Pages
