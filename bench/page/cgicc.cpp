#include <cgicc/HTMLClasses.h>

#include <ostream>

#include "page/compose.hpp"
#include "page/escape.hpp"
#include "page/string_buffer.hpp"

namespace Bench {
namespace {

cgicc::HTMLElement* Make(char const* tag) {
    switch (tag[0] + tag[1]) {
        case 'd' + 'i':
            return new cgicc::div;
        case 's' + 'p':
            return new cgicc::span;
        case 'i' + 'm':
            return new cgicc::img;
        case 'h' + '2':
            return new cgicc::h2;
        case 't' + 'a':
            return new cgicc::table;
        case 't' + 'r':
            return new cgicc::tr;
        case 't' + 'd':
            return new cgicc::td;
        default:
            return new cgicc::a;
    }
}

// The library has no element for a text beside other elements.
class TextElement : public cgicc::HTMLElement {
public:
    explicit TextElement(std::string const& text) : HTMLElement(nullptr, nullptr, &text, eAtomic) {}
    char const* getName() const override { return ""; }
    HTMLElement* clone() const override { return new TextElement(*this); }
    void render(std::ostream& out) const override { out << Escaped(getData()); }
};

struct Sink {
    std::vector<cgicc::HTMLElement*> open;
    std::unique_ptr<cgicc::HTMLElement>& root;

    void Open(char const* tag) {
        cgicc::HTMLElement* const element = Make(tag);
        if (open.empty()) {
            root.reset(element);
        } else {
            open.back()->add(element);
        }
        open.push_back(element);
    }
    void Leaf(char const* tag) { Open(tag); }
    void Attribute(char const* name, std::string const& value) { open.back()->set(name, value); }
    void Text(std::string const& text) { open.back()->add(new TextElement(text)); }
    void Close() { open.pop_back(); }
    void CloseLeaf() { Close(); }
};

class CgiccPage : public Contender {
public:
    void Build(PageData const& data) override {
        Sink sink = {{}, root_};
        Compose(sink, data);
    }

    std::string_view Write() override {
        text_.clear();
        StringBuffer buffer(text_);
        std::ostream stream(&buffer);
        root_->render(stream);
        return text_;
    }

    void Destroy() override { root_.reset(); }

private:
    std::unique_ptr<cgicc::HTMLElement> root_;
    std::string text_;
};

}  // namespace

std::unique_ptr<Contender> MakeCgicc() {
    return std::make_unique<CgiccPage>();
}

}  // namespace Bench
