// Element kinds that pages need besides those of <quillo>.
//
//     Ul list;
//     list << Li("a < b") << (Li() << Strong("mtu") << " 1500");
//
// writes
//
//     <ul>
//     <li>a &lt; b</li>
//     <li><strong>mtu</strong> 1500</li>
//     </ul>
//
// A kind of text is written on one line, all below it included: a line end behind an element in a
// line would be seen as a blank. Every other kind is written as the library writes any element.
#ifndef QUILLO_KIT_ELEMENTS_HPP
#define QUILLO_KIT_ELEMENTS_HPP

#include <quillo>
#include <string>

namespace QuilloKit {

// An element of any tag that may have children.
class Tag : public Quillo::Element {
public:
    explicit Tag(std::string const& tag);
};

// A void element (HTML Living Standard, 13.1.2), such as "meta": a leaf, so it has no closing tag.
class VoidTag : public Quillo::Element {
public:
    explicit VoidTag(std::string const& tag);
};

// An element of any tag, on one line and holding `text`, which is escaped when it is written. Empty
// text adds nothing.
class TextTag : public Tag {
public:
    explicit TextTag(std::string const& tag, std::string const& text = "");
};

// An element in which white space is seen as it is written: the reader sees the texts below it and
// nothing else, in debug mode too. Line ends are written as a browser reads them, so CR LF and CR
// in `text` become LF.
class PreformattedTag : public Quillo::Element {
public:
    explicit PreformattedTag(std::string const& tag, std::string const& text = "");
};

// A group without a tag of its own.
class Group : public Quillo::Element {
public:
    Group();
};

// "<!DOCTYPE html>" on a line of its own: a leaf. It is the first child of a page's `Group`, and
// the element "html" the second.
class Doctype : public Quillo::Element {
public:
    Doctype();
};

// A script and a style sheet: leaves that hold all of their text, which is never escaped, for
// entities have no meaning in it. What would end the element early is written so that it does not,
// and means the same inside a string of the script or of the style sheet. Elsewhere it is an error
// there, which is better than one here.
//
//     Script("a(\"</script><!--\")")    <script> holding a("\u003C/script>\u003C!--")
//     Style("a::after{content:\"</style>\"}")    <style> holding a::after{content:"<\/style>"}
//
// That protects the page from its text, not the script: data goes through `JsString`. A script that
// lies elsewhere is `Script("").SetAttr("src", SafeUrl(url))`.
class Script : public Quillo::Element {
public:
    explicit Script(std::string const& code);
};

class Style : public Quillo::Element {
public:
    explicit Style(std::string const& sheet);
};

class Pre : public PreformattedTag {
public:
    explicit Pre(std::string const& text = "") : PreformattedTag("pre", text) {}
};

class Textarea : public PreformattedTag {
public:
    explicit Textarea(std::string const& text = "") : PreformattedTag("textarea", text) {}
};

#define QUILLO_KIT_KIND(Name, Form, tag) \
    class Name : public Form {           \
    public:                              \
        Name() : Form(tag) {}            \
    }

#define QUILLO_KIT_TEXT_KIND(Name, tag)                                     \
    class Name : public TextTag {                                           \
    public:                                                                 \
        explicit Name(std::string const& text = "") : TextTag(tag, text) {} \
    }

// The document.
QUILLO_KIT_KIND(Html, Tag, "html");
QUILLO_KIT_KIND(Head, Tag, "head");
QUILLO_KIT_KIND(Meta, VoidTag, "meta");
QUILLO_KIT_KIND(Link, VoidTag, "link");
QUILLO_KIT_TEXT_KIND(Title, "title");
QUILLO_KIT_KIND(Body, Tag, "body");

// Its parts.
QUILLO_KIT_KIND(Header, Tag, "header");
QUILLO_KIT_KIND(Nav, Tag, "nav");
QUILLO_KIT_KIND(Main, Tag, "main");
QUILLO_KIT_KIND(Section, Tag, "section");
QUILLO_KIT_KIND(Aside, Tag, "aside");
QUILLO_KIT_KIND(Footer, Tag, "footer");
QUILLO_KIT_TEXT_KIND(H1, "h1");
QUILLO_KIT_TEXT_KIND(H3, "h3");

// Text.
QUILLO_KIT_TEXT_KIND(P, "p");
QUILLO_KIT_KIND(Ul, Tag, "ul");
QUILLO_KIT_KIND(Ol, Tag, "ol");
QUILLO_KIT_TEXT_KIND(Li, "li");
QUILLO_KIT_TEXT_KIND(Code, "code");
QUILLO_KIT_TEXT_KIND(Strong, "strong");
QUILLO_KIT_TEXT_KIND(Small, "small");
QUILLO_KIT_TEXT_KIND(Time, "time");
QUILLO_KIT_KIND(Details, Tag, "details");
QUILLO_KIT_TEXT_KIND(Summary, "summary");

// Forms. The library wants an attribute "name" on each form.
QUILLO_KIT_KIND(Form, Tag, "form");
QUILLO_KIT_KIND(Fieldset, Tag, "fieldset");
QUILLO_KIT_TEXT_KIND(Legend, "legend");
QUILLO_KIT_TEXT_KIND(Label, "label");
QUILLO_KIT_KIND(Input, VoidTag, "input");
QUILLO_KIT_KIND(Select, Tag, "select");
QUILLO_KIT_TEXT_KIND(Option, "option");
QUILLO_KIT_TEXT_KIND(Button, "button");
QUILLO_KIT_TEXT_KIND(Meter, "meter");
QUILLO_KIT_TEXT_KIND(Progress, "progress");

// Tables. `Quillo::Table` counts the rows that are its own, not those in a section.
QUILLO_KIT_TEXT_KIND(Caption, "caption");
QUILLO_KIT_KIND(Thead, Tag, "thead");
QUILLO_KIT_KIND(Tbody, Tag, "tbody");
QUILLO_KIT_KIND(Tfoot, Tag, "tfoot");
QUILLO_KIT_KIND(Tr, Tag, "tr");
QUILLO_KIT_TEXT_KIND(Th, "th");
QUILLO_KIT_TEXT_KIND(Td, "td");

#undef QUILLO_KIT_TEXT_KIND
#undef QUILLO_KIT_KIND

// Adds text to `parent`, escaped when it is written, and returns `parent`.
Quillo::Element const& operator<<(Quillo::Element const& parent, std::string const& text);

}  // namespace QuilloKit

#endif
