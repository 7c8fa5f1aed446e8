// Navigation bars: each state of an item at either end and between. The labels say what an item is:
// a link, the page that is shown ("here"), not to be chosen ("closed"), or both of these.
#include <quillo_kit/elements.hpp>

#include "example.hpp"

using namespace Quillo;
using namespace QuilloKit;

namespace Pages {
namespace {

Element BarsOfOneItem() {
    return Group() << MakeNavBar({{"Link", "/status", false, false}})
                   << MakeNavBar({{"Here", "/status", true, false}})
                   << MakeNavBar({{"Closed", "/status", false, true}})
                   << MakeNavBar({{"Both", "/status", true, true}}) << MakeNavBar({});
}

Element LinkFirst() {
    Slot const link = {"Link", "/status", false, false};
    return Group() << MakeNavBar({link, {"Link", "/network", false, false}})
                   << MakeNavBar({link, {"Here", "/network", true, false}})
                   << MakeNavBar({link, {"Closed", "/network", false, true}})
                   << MakeNavBar({link, {"Both", "/network", true, true}});
}

Element HereFirst() {
    Slot const here = {"Here", "/status", true, false};
    return Group() << MakeNavBar({here, {"Link", "/network", false, false}})
                   << MakeNavBar({here, {"Here", "/network", true, false}})
                   << MakeNavBar({here, {"Closed", "/network", false, true}})
                   << MakeNavBar({here, {"Both", "/network", true, true}});
}

Element ClosedFirst() {
    Slot const closed = {"Closed", "/status", false, true};
    return Group() << MakeNavBar({closed, {"Link", "/network", false, false}})
                   << MakeNavBar({closed, {"Here", "/network", true, false}})
                   << MakeNavBar({closed, {"Closed", "/network", false, true}})
                   << MakeNavBar({closed, {"Both", "/network", true, true}});
}

Element BothFirst() {
    Slot const both = {"Both", "/status", true, true};
    return Group() << MakeNavBar({both, {"Link", "/network", false, false}})
                   << MakeNavBar({both, {"Here", "/network", true, false}})
                   << MakeNavBar({both, {"Closed", "/network", false, true}})
                   << MakeNavBar({both, {"Both", "/network", true, true}});
}

Element BetweenLinks() {
    Slot const link = {"Link", "/status", false, false};
    return Group() << MakeNavBar({link, {"Link", "/network", false, false}, link})
                   << MakeNavBar({link, {"Here", "/network", true, false}, link})
                   << MakeNavBar({link, {"Closed", "/network", false, true}, link})
                   << MakeNavBar({link, {"Both", "/network", true, true}, link});
}

}  // namespace

ExampleGroup NavBarExamples() {
    return {"Navigation bars",
            true,
            {QUILLO_EXAMPLE(BarsOfOneItem), QUILLO_EXAMPLE(LinkFirst), QUILLO_EXAMPLE(HereFirst),
             QUILLO_EXAMPLE(ClosedFirst), QUILLO_EXAMPLE(BothFirst), QUILLO_EXAMPLE(BetweenLinks)}};
}

}  // namespace Pages
