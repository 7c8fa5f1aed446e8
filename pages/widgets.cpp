// The gallery: every widget in every state, and every group of the kit's elements, each beside the
// source that built it.
#include <quillo_kit/elements.hpp>
#include <quillo_kit/safe.hpp>

#include <algorithm>

#include "frame.hpp"
#include "gallery/example.hpp"
#include "record_table.hpp"

using namespace Quillo;
using namespace QuilloKit;
using QuilloServer::Request;
using QuilloServer::StaticFile;

namespace Pages {
namespace {

// The examples' own text is English, in every language of the page.
Element MakeExample(Example const& example, bool hasPageDirection, int& lastId) {
    Element const built = example.build();
    NumberIds(built, lastId);
    Div specimen;
    specimen.SetAttr("class", "specimen") << built;
    if (!hasPageDirection) {
        specimen.SetAttr("dir", "ltr");
    }
    Pre source(SourceOf(example.function, exampleSources));
    source.SetAttr("class", "source").SetAttr("dir", "ltr");
    Div both;
    both.SetAttr("class", "example").SetAttr("lang", "en") << specimen << source;
    return both;
}

Element MakeGroup(Request& request, ExampleGroup const& group, int& lastId) {
    Tag section("section");
    section << (H3() << Phrase(request, group.heading));
    for (Example const& example : group.examples) {
        section << MakeExample(example, group.hasPageDirection, lastId);
    }
    return section;
}

std::vector<std::string> ImagePaths() {
    std::vector<std::string> paths;
    for (StaticFile const* file : QuilloServer::StaticFiles()) {
        if (file->type == "image/gif") {
            paths.push_back(file->path);
        }
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

Element MakeImages(Request& request) {
    RecordList list(request, {"Image", "Path"});
    for (std::string const& path : ImagePaths()) {
        list.Add({Img().Src(SafeUrl(path)).SetAttr("class", "swatch"), Isolated(path)});
    }
    return list.Section("Images");
}

void WriteWidgets(Request& request, std::ostream& out) {
    Group content;
    content << (P() << Phrase(request, "Each example stands beside its own source."));
    int lastId = 0;
    for (ExampleGroup const& group : {NavBarExamples(), TabSetExamples(), TitleAndTableExamples(),
                                      TextExamples(), FormExamples()}) {
        content << MakeGroup(request, group, lastId);
    }
    content << MakeImages(request);
    WriteFramed(request, out, "widgets", content);
}

QuilloServer::Page const widgets("widgets", "Widgets", 9, WriteWidgets);

}  // namespace
}  // namespace Pages
