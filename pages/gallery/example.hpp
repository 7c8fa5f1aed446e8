// What the gallery shows: functions that build something, each beside its own source.
#ifndef QUILLO_PAGES_GALLERY_EXAMPLE_HPP
#define QUILLO_PAGES_GALLERY_EXAMPLE_HPP

#include <quillo>
#include <string>
#include <vector>

namespace Pages {

struct Example {
    std::string function;  // the name of `build`
    Quillo::Element (*build)();
};

#define QUILLO_EXAMPLE(function) \
    Pages::Example {             \
#function, function      \
    }

struct ExampleGroup {
    std::string heading;    // a phrase
    bool hasPageDirection;  // it is mirrored in Arabic; otherwise it runs as its English text does
    std::vector<Example> examples;
};

ExampleGroup NavBarExamples();
ExampleGroup TabSetExamples();
ExampleGroup TitleAndTableExamples();
ExampleGroup TextExamples();
ExampleGroup FormExamples();

// The sources of the functions above, as they were compiled.
extern char const exampleSources[];

// The definition of `function` in `sources`: a function without arguments that gives an Element.
// Throws std::logic_error when there is none.
std::string SourceOf(std::string const& function, std::string const& sources);

// Puts a number behind each id below `tree`, "-7" behind the seventh: a page shows several widgets
// of one kind, and an id must be the only one of a page. `last` is the last number given out.
void NumberIds(Quillo::Element const& tree, int& last);

}  // namespace Pages

#endif
