#include "quillo_kit/elements.hpp"

#include <limits>

using namespace Quillo;

namespace QuilloKit {
namespace {

typedef boost::shared_ptr<ElementImpl> Impl;

// Written on one line, and from a level at which debug mode does not indent: neither the elements
// below it nor the text behind a line end gain a blank.
class PreformattedImpl : public ElementImpl {
public:
    explicit PreformattedImpl(std::string const& tagName) : ElementImpl(tagName, false) {
        oneLine = true;
    }

    void Render(Renderer& r, int level) const override {
        if (r.oneLineDepth == 0) {
            r << Indent(level);
        }
        ElementImpl::Render(r, std::numeric_limits<int>::min());
    }
};

// Takes no children, but is written with its text and a closing tag.
class RawTextImpl : public ElementImpl {
public:
    RawTextImpl(std::string const& tagName, std::string const& text)
        : ElementImpl(tagName, true), content(text.empty() ? Element() : Text(text, false)) {}

    void Render(Renderer& r, int level) const override {
        Tag const whole(tag);
        whole.impl->attrs = attrs;
        whole.impl->emptyAttrs = emptyAttrs;
        whole.impl->oneLine = oneLine;
        whole.impl->hasFocus = hasFocus;
        whole << content;
        whole.impl->Render(r, level);
    }

private:
    Element const content;
};

class DoctypeImpl : public ElementImpl {
public:
    DoctypeImpl() : ElementImpl("", true) {}

    void Render(Renderer& r, int) const override { r << "<!DOCTYPE html>" << Endl(); }
};

bool IsLetter(char c, char lowerCase) {
    return c == lowerCase || (lowerCase >= 'a' && lowerCase <= 'z' && c == lowerCase - 'a' + 'A');
}

// Whether `sought`, in lower case, stands at `at` in any case.
bool StandsAt(std::string const& text, std::size_t at, std::string const& sought) {
    if (text.size() - at < sought.size()) {
        return false;
    }
    for (std::size_t i = 0; i < sought.size(); ++i) {
        if (!IsLetter(text[at + i], sought[i])) {
            return false;
        }
    }
    return true;
}

// `text` with `written` in the place of each '<' that begins `sought`.
std::string Disarmed(std::string const& text, std::string const& sought,
                     std::string const& written) {
    std::string disarmed;
    for (std::size_t i = 0; i < text.size(); ++i) {
        disarmed += StandsAt(text, i, sought) ? written : std::string(1, text[i]);
    }
    return disarmed;
}

// Behind "<!--" the tag "<script" would make the next "</script" a part of the text. As \u003C the
// sign is the same in a string of JavaScript and of JSON.
std::string DisarmedScript(std::string const& code) {
    return Disarmed(Disarmed(code, "</script", "\\u003C"), "<!--", "\\u003C");
}

std::string DisarmedSheet(std::string const& sheet) {
    return Disarmed(sheet, "</style", "<\\");
}

std::string WithLineFeeds(std::string const& text) {
    std::string lines;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\r') {
            lines += text[i];
        } else if (text.compare(i + 1, 1, "\n") != 0) {
            lines += '\n';
        }
    }
    return lines;
}

}  // namespace

Tag::Tag(std::string const& tag) : Element(Impl(new ElementImpl(tag, false))) {}
VoidTag::VoidTag(std::string const& tag) : Element(Impl(new ElementImpl(tag, true))) {}
Group::Group() : Element(Impl(new ContainerImpl)) {}
Doctype::Doctype() : Element(Impl(new DoctypeImpl)) {}

TextTag::TextTag(std::string const& tag, std::string const& text) : Tag(tag) {
    SetOneLine();
    if (!text.empty()) {
        *this << text;
    }
}

// A browser drops a line feed behind the opening tag. That one is written here, always: a text that
// begins with one keeps it.
PreformattedTag::PreformattedTag(std::string const& tag, std::string const& text)
    : Element(Impl(new PreformattedImpl(tag))) {
    *this << Text("\n", false) << WithLineFeeds(text);
}

Script::Script(std::string const& code)
    : Element(Impl(new RawTextImpl("script", DisarmedScript(code)))) {}

Style::Style(std::string const& sheet)
    : Element(Impl(new RawTextImpl("style", DisarmedSheet(sheet)))) {}

Element const& operator<<(Element const& parent, std::string const& text) {
    return parent << Text(text, true);
}

}  // namespace QuilloKit
