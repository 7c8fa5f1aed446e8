// A tree as HTML.
//
//     <div id="page">              opening tag: attributes by name, those with an empty value last
//     <h2 class="">                a child starts a line unless text stands before it
//     Status &amp; more</h2>       text has no line end of its own
//     <span>one<br >line</span>    a one-line element, all below it included
//     <img src="/a.gif" >          a leaf has no closing tag
//     <p></p>                      an element without children stands on one line
//     </div>
//
// Every element but text is followed by a line end, unless a one-line element is open around it.
// Debug mode indents each line by two blanks a level. A form is followed by the script that gives
// the page's focus element the focus.
//
// `Render` alone recurses. What needs stack (the texts of a report, the strings it builds) is kept
// out of its frame, in functions that are not inlined.
#include <cstring>
#include <string_view>
#include <typeinfo>

#include "elements/diagnostics.hpp"
#include "elements/renderer.hpp"
#include "elements/tag_writer.hpp"

namespace Quillo {
namespace {

using namespace std::string_view_literals;

char const self[] = "Render";

bool IsTagged(ElementImpl const& element, std::string_view tag) {
    return element.tag == tag;
}

bool IsForm(ElementImpl const& element) {
    return IsTagged(element, "form");
}

// The value of the attribute "name"; null when there is none. An empty attribute is not one.
std::string const* NameOf(ElementImpl const& element) {
    auto const name = element.attrs.find("name");
    return name != element.attrs.end() ? &name->second : nullptr;
}

// Forms have a name and do not nest. Notes the form that is being written; an outer form stays.
void CheckForm(ElementImpl const& form, Renderer& r) {
    std::string const* const name = NameOf(form);
    if (name == nullptr) {
        ReportDiagnostic(logSpecError, "%s:  each form must have a name", self);
    } else if (r.formName.empty()) {
        r.formName = *name;
    } else {
        ReportDiagnostic(logSpecError, "%s:  can't have nested forms (%s and %s)", self,
                         r.formName.c_str(), name->c_str());
    }
}

// Notes `name` as the page's focus element. The first one wins.
void TakeFocus(std::string const& name, Renderer& r) {
    std::string const reference = r.formName + "." + name;
    if (r.focusRef.empty()) {
        r.focusRef = reference;
    } else {
        ReportDiagnostic(logSpecError, "%s:  There is more than one element with focus: %s and %s",
                         self, r.focusRef.c_str(), reference.c_str());
    }
}

// An element with focus is no form, stands in a form and has a name.
void CheckFocus(ElementImpl const& element, Renderer& r) {
    std::string const* const name = NameOf(element);
    if (IsForm(element)) {
        ReportDiagnostic(logSpecError, "%s:  forms can't have focus", self);
    } else if (r.formName.empty()) {
        ReportDiagnostic(logSpecError, "%s: Element with focus needs to be inside a form", self);
    } else if (name == nullptr) {
        ReportDiagnostic(logSpecError, "%s: Element with focus needs to have a name", self);
    } else {
        TakeFocus(*name, r);
    }
}

// Neither names nor values are escaped: who sets a value passes it through `Filter`.
void WriteAttributes(ElementImpl const& element, TagWriter& tag) {
    for (auto const& attribute : element.attrs) {
        tag.Add(" "sv, attribute.first, R"(=")"sv, attribute.second, R"(")"sv);
    }
    for (std::string const& name : element.emptyAttrs) {
        tag.Add(" "sv, name, R"(="")"sv);
    }
}

// What goes before a tag: the indentation, and the form and the focus that the element brings.
void Begin(ElementImpl const& element, Renderer& r, int level) {
    if (r.oneLineDepth == 0) {
        StartLine(r, level);
    }
    if (element.oneLine) {
        ++r.oneLineDepth;
    }
    if (IsForm(element)) {
        CheckForm(element, r);
    }
    if (element.hasFocus) {
        CheckFocus(element, r);
    }
}

// The form is over, even when it was an inner one. The script follows every form once an element
// has asked for the focus.
void WriteFormEnd(Renderer& r) {
    r.formName.clear();
    if (!r.focusRef.empty()) {
        r << "<script type=\"text/javascript\">document." << r.focusRef << ".focus();</script>";
        EndLine(r);
    }
}

// What goes behind an element's last tag, which is in `tag`: the line end, and the form's.
void Finish(ElementImpl const& element, Renderer& r, TagWriter& tag) {
    if (element.oneLine) {
        --r.oneLineDepth;
    }
    if (r.oneLineDepth == 0) {
        tag.EndLine();
    } else {
        tag.End();
    }
    if (IsForm(element)) {
        WriteFormEnd(r);
    }
}

// A leaf is its opening tag. Any other element's is followed by a line end when a body comes.
__attribute__((noinline)) void WriteOpeningTag(ElementImpl const& element, Renderer& r, int level) {
    Begin(element, r, level);
    TagWriter tag(r);
    tag.Add("<"sv, element.tag);
    WriteAttributes(element, tag);
    if (element.isLeaf) {
        tag << " >"sv;
        Finish(element, r, tag);
        return;
    }
    tag << ">"sv;
    if (!element.children.empty() && r.oneLineDepth == 0) {
        tag.EndLine();
    } else {
        tag.End();
    }
}

// Script content is never escaped: markup has no meaning in it.
bool IsInScript(ElementImpl const& element) {
    for (ElementImpl const* ancestor = element.parent; ancestor != nullptr;
         ancestor = ancestor->parent) {
        if (IsTagged(*ancestor, "script")) {
            return true;
        }
    }
    return false;
}

// Whether what `text` becomes surely fits into one write: a byte becomes at most "&quot;".
bool IsShort(std::string const& text) {
    return text.size() < TagWriter::capacity / 6;
}

// What `Filter` gives of `text`, up to its NUL, without a string made for it. `p` is the first of
// its `marks`.
void WriteFiltered(char const* text, char const* p, Marks<NotPlain>& marks, TagWriter& out) {
    for (;; p = marks.From(text)) {
        out << std::string_view(text, static_cast<std::size_t>(p - text));
        if (*p == '\0') {
            out.LookAtStream();
            return;
        }
        out << Replacement(*p);
        text = p + 1;
    }
}

// Through a string, which the frame of `WriteText` is not to have.
__attribute__((noinline)) void WriteLong(std::string const& text, TagWriter& out) {
    out << Filter(text);
    out.LookAtStream();
}

void WriteText(TextImpl const& element, TagWriter& out) {
    std::string const& text = element.text;
    char const* const end = text.data() + text.size();
    Marks<NotPlain> marks(text.data(), end);
    char const* const first = element.filter ? marks.From(text.data()) : end;
    if (first == end || IsInScript(element)) {
        out << text;
    } else if (!isSmall && IsShort(text) && out.IsCollecting()) {
        WriteFiltered(text.data(), first, marks, out);
    } else {
        WriteLong(text, out);
    }
}

// The text that is an element's last child reaches the stream with the tag behind it, unless it is
// of a kind derived from it, which writes as it likes. A type that is known at two addresses only
// takes the slower way.
bool IsOrdinaryText(ElementImpl const& element) {
    return !isSmall && &typeid(element) == &typeid(TextImpl);
}

void AddClosingTag(ElementImpl const& element, Renderer& r, TagWriter& tag) {
    tag.Add("</"sv, element.tag, ">"sv);
    Finish(element, r, tag);
}

__attribute__((noinline)) void WriteClosingTag(ElementImpl const& element, bool hasBody,
                                               Renderer& r, int level) {
    if (hasBody && r.oneLineDepth == 0) {
        StartLine(r, level);
    }
    TagWriter tag(r);
    AddClosingTag(element, r, tag);
}

// Writes the text that is the child at `place` and, when that is the last one, the closing tag with
// it: true then. What the text reports may have added a child.
__attribute__((noinline)) bool WriteTextChild(ElementImpl const& element, std::size_t place,
                                              Renderer& r, int level) {
    StartLine(r, level + 1);
    TagWriter tag(r);
    WriteText(static_cast<TextImpl const&>(*element.children[place]), tag);
    if (place + 1 < element.children.size()) {
        tag.End();
        return false;
    }
    AddClosingTag(element, r, tag);
    return true;
}

}  // namespace

void ElementImpl::Render(Renderer& r, int level) const {
    WriteOpeningTag(*this, r, level);
    if (isLeaf) {
        return;
    }
    bool const hasBody = !children.empty();
    if (this == debugMsgs.impl.get()) {
        Diagnostics::RenderDebugLines(*this, r, level + 1);
    } else {
        // By index, and the count read anew: writing a child, or a report, may add another one.
        for (std::size_t i = 0; i < children.size(); ++i) {
            ElementImpl const& child = Element::Checked(children[i]);
            if (!IsOrdinaryText(child)) {
                child.Render(r, level + 1);
            } else if (WriteTextChild(*this, i, r, level)) {
                return;
            }
        }
    }
    WriteClosingTag(*this, hasBody, r, level);
}

void TextImpl::Render(Renderer& r, int level) const {
    StartLine(r, level);
    TagWriter out(r);
    WriteText(*this, out);
    out.End();
}

void ContainerImpl::Render(Renderer& r, int level) const {
    for (std::size_t i = 0; i < children.size(); ++i) {
        Element::Checked(children[i]).Render(r, level);
    }
}

void NullImpl::Render(Renderer&, int) const {}

void EndlImpl::Render(Renderer& r, int) const {
    EndLine(r);
}

}  // namespace Quillo
