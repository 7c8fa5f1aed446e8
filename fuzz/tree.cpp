// Trees, built and written as the input says, beside a model of them.
//
// The numbers of the input are a program of steps, each of which works on one of eight handles.
// Behind every step that can fail, and at the end, both trees are compared.
#include <array>
#include <sstream>

#include "feed.hpp"
#include "library.hpp"
#include "oracle.hpp"
#include "tree_model.hpp"

using namespace Quillo;

namespace {

// No more elements are written for one tree: sharing could double them with every step.
constexpr std::size_t mostElements = 300;

// A stream that takes so many bytes and then refuses.
class ShortBuffer : public std::streambuf {
public:
    explicit ShortBuffer(std::size_t size) : room(size) {}

    std::string text;

protected:
    int_type overflow(int_type byte) override {
        char const c = traits_type::to_char_type(byte);
        return xsputn(&c, 1) == 1 ? byte : traits_type::eof();
    }
    std::streamsize xsputn(char const* bytes, std::streamsize size) override {
        std::size_t const taken = std::min(room - text.size(), static_cast<std::size_t>(size));
        text.append(bytes, taken);
        return static_cast<std::streamsize>(taken);
    }

private:
    std::size_t room;
};

// An element and its model; nothing in either: a handle that refers to nothing.
struct Pair {
    Element element;
    std::shared_ptr<ModelNode> model;
};

Pair MakePair(Element const& element, ModelNode::Kind kind, std::string const& tag, bool isLeaf) {
    return {element, std::make_shared<ModelNode>(kind, tag, isLeaf)};
}

Pair MakeText(std::string const& text, bool isFiltered) {
    Pair pair = MakePair(Text(text, isFiltered), ModelNode::Text, "", true);
    pair.model->text = text;
    pair.model->isFiltered = isFiltered;
    return pair;
}

Pair MakeTag(std::string const& tag, bool isLeaf) {
    boost::shared_ptr<ElementImpl> const impl(new ElementImpl(tag, isLeaf));
    return MakePair(Element(impl), ModelNode::Plain, tag, isLeaf);
}

void SetName(Pair& pair, std::string const& name) {
    pair.element.SetAttr("name", name);
    pair.model->attrs["name"] = name;
    pair.model->emptyAttrs.erase("name");
}

// Most forms have a name.
Pair MakeForm(Feed& feed) {
    Pair form = MakeTag("form", false);
    unsigned const kind = feed.Below(4);
    if (kind != 0) {
        SetName(form, kind == 1 ? feed.Text() : "form");
    }
    return form;
}

Pair MakeAny(Feed& feed) {
    switch (feed.Below(16)) {
        case 0:
            return {Element(), nullptr};
        case 1:
            return MakePair(Div(), ModelNode::Plain, "div", false);
        case 2:
            return MakePair(Span(), ModelNode::Plain, "span", false);
        case 3:
            return MakePair(A(), ModelNode::Plain, "a", false);
        case 4:
            return MakePair(H2(), ModelNode::Plain, "h2", false);
        case 5:
            return MakePair(Img(), ModelNode::Plain, "img", true);
        case 6:
            return MakePair(Br(), ModelNode::Plain, "br", true);
        case 7:
            return MakePair(Endl(), ModelNode::LineEnd, "", true);
        case 8:
            return MakePair(Null(), ModelNode::Null, "", false);
        case 9:
            return MakePair(Element(boost::shared_ptr<ElementImpl>(new ContainerImpl)),
                            ModelNode::Container, "", false);
        case 10:
            return MakePair(Table(), ModelNode::Plain, "table", false);
        case 11:
            return MakeForm(feed);
        case 12:
            return MakeTag("script", false);
        case 13:
            return MakeTag(feed.Text(), feed.Bit());
        case 14: {
            Pair space = MakeText("&nbsp;", false);
            space.element = Nbsp();
            return space;
        }
        default: {
            bool const isFiltered = !feed.Bit();
            return MakeText(feed.Text(), isFiltered);
        }
    }
}

class Machine {
public:
    explicit Machine(Feed& input) : feed(input) {}

    void Run() {
        for (int steps = 0; steps < 200 && !feed.IsEmpty(); ++steps) {
            Step(feed.Below(13), pairs[feed.Below(8)]);
        }
        for (Pair const& pair : pairs) {
            Compare(pair);
        }
    }

private:
    void Step(unsigned step, Pair& pair) {
        if (step < 3) {
            pair = MakeAny(feed);
        } else if (step < 6) {
            Add(pair, pairs[feed.Below(8)]);
        } else if (step == 6) {
            Pair const copy = pairs[feed.Below(8)];
            pair = copy;
        } else if (pair.model == nullptr) {
            Expect(!pair.element.IsNull(), "a handle to nothing is not null");
        } else {
            Change(step, pair);
        }
    }

    void Change(unsigned step, Pair& pair) {
        static std::string const names[] = {"name", "style", "class", "id"};
        std::string const name = feed.Bit() ? names[feed.Below(4)] : feed.Text();
        if (step == 7) {
            // Some are longer than any buffer.
            std::string const piece = feed.Text();
            std::string value = piece;
            for (unsigned left = feed.Below(8) == 7 ? 100 : 0; left > 0; --left) {
                value += piece;
            }
            pair.element.SetAttr(name, value);
            pair.model->attrs[name] = value;
            pair.model->emptyAttrs.erase(name);
        } else if (step == 8) {
            pair.element.SetEmptyAttr(name);
            pair.model->emptyAttrs.insert(name);
        } else if (step == 9) {
            AddStyle(pair, name);
        } else if (step == 10) {
            SetFlags(pair, feed.Byte());
        } else if (step == 11) {
            SetSource(pair, name);
        } else {
            CompareShort(pair, feed.Byte());
        }
    }

    static void AddStyle(Pair& pair, std::string const& style) {
        auto const present = pair.model->attrs.find("style");
        std::string const joined =
            present != pair.model->attrs.end() ? present->second + ";" + style : style;
        pair.element.AddStyle(style);
        pair.model->attrs["style"] = joined;
        pair.model->emptyAttrs.erase("style");
    }

    static void SetSource(Pair& pair, std::string const& url) {
        Img image;
        image.impl = pair.element.impl;
        image.Src(url);
        pair.model->attrs["src"] = url;
        pair.model->attrs["class"] = "middle";
        pair.model->emptyAttrs.erase("src");
        pair.model->emptyAttrs.erase("class");
    }

    void SetFlags(Pair& pair, unsigned flags) {
        if ((flags & 1) != 0) {
            pair.element.SetOneLine();
            pair.model->isOneLine = true;
        }
        if ((flags & 2) != 0) {
            pair.element.SetFocus();
            pair.model->hasFocus = true;
        }
        if ((flags & 4) != 0) {
            SetName(pair, (flags & 8) != 0 ? feed.Text() : "field");
        }
    }

    void Add(Pair const& parent, Pair const& child) {
        if (child.model == nullptr) {
            parent.element << child.element;
            return;
        }
        if (parent.model == nullptr || child.model->Holds(parent.model.get()) ||
            parent.model->Size() + child.model->Size() > mostElements) {
            return;
        }
        if (parent.model->isLeaf) {
            AddToLeaf(parent, child);
            return;
        }
        parent.element << child.element;
        parent.model->children.push_back(child.model);
        child.model->parent = parent.model.get();
    }

    // A platform whose ThrowError returns is no leave to go on.
    void AddToLeaf(Pair const& leaf, Pair const& child) {
        Platform().trace.clear();
        Platform().throwErrorReturns = feed.Bit();
        bool isRefused = false;
        try {
            leaf.element << child.element;
        } catch (Glb::Error const&) {
            isRefused = true;
        }
        Expect(isRefused, "a leaf takes no child");
        ExpectEqual(Platform().trace,
                    std::vector<std::string>{"ThrowError Tried to add child to <" +
                                             leaf.model->tag + "> item"},
                    "a refused child is told of");
        Compare(leaf);
        Compare(child);
    }

    // The elements of both trees have the same links.
    static void CompareLinks(ElementImpl const& element, ModelNode const& model) {
        ExpectEqual(element.parent != nullptr, model.parent != nullptr,
                    "a parent is known or null");
        if (model.parent != nullptr) {
            ExpectEqual(element.parent->tag, model.parent->tag, "the parent is the last one");
            ExpectEqual(element.parent->children.size(), model.parent->children.size(),
                        "the parent has its children");
        }
        ExpectEqual(element.children.size(), model.children.size(), "children stay children");
        for (std::size_t i = 0; i < model.children.size(); ++i) {
            CompareLinks(*element.children[i], *model.children[i]);
        }
    }

    void Compare(Pair const& pair) {
        ExpectEqual(pair.element.impl != nullptr, pair.model != nullptr,
                    "a handle keeps its element");
        if (pair.model == nullptr) {
            return;
        }
        ExpectEqual(pair.element.IsNull(), pair.model->kind == ModelNode::Null, "Null is null");
        CompareLinks(*pair.element.impl, *pair.model);
        unsigned const kind = feed.Byte();
        int const level = static_cast<int>(kind >> 1 & 3);
        ModelPage const page = WriteModel(*pair.model, level, (kind & 1) != 0);
        isDebug = (kind & 1) != 0;
        Platform().log.clear();
        debugMsgs = Div();
        ExpectEqual(Html(pair.element, level), page.html, "a tree is written as its model is");
        ExpectEqual(Reports(), page.reports, "a page's mistakes are reported");
    }

    // On a stream that is too short, the page is cut; and the tree is what it was.
    void CompareShort(Pair const& pair, unsigned room) {
        ModelPage const page = WriteModel(*pair.model, 0, false);
        isDebug = false;
        ShortBuffer buffer(room);
        std::ostream stream(&buffer);
        bool const throws = feed.Bit();
        if (throws) {
            stream.exceptions(std::ios::badbit);
        }
        try {
            Renderer r(stream);
            pair.element.impl->Render(r, 0);
        } catch (std::ios_base::failure const&) {
            Expect(throws, "only a stream that was told to throws");
        }
        ExpectEqual(buffer.text, page.html.substr(0, room), "a short stream gets what it takes");
        ExpectEqual(stream.bad(), page.html.size() > room, "a short stream is bad");
        Compare(pair);
    }

    Feed& feed;
    std::array<Pair, 8> pairs;
};

// A renderer by itself: what page code writes by its operators.
void CheckRenderer(Feed feed) {
    std::ostringstream page;
    Renderer r(page);
    std::string expected;
    bool isAtStart = true;
    isDebug = feed.Bit();
    for (unsigned left = feed.Below(8); left > 0; --left) {
        unsigned const kind = feed.Below(6);
        int const number = feed.Number();
        std::string const text = feed.Text();
        if (kind == 0) {
            r << text;
            expected += text;
        } else if (kind == 1) {
            r << TightText(text).c_str();
            expected += text.c_str();
        } else if (kind == 2) {
            r << number;
            expected += std::to_string(number);
        } else if (kind == 3) {
            r << static_cast<char>(number & 0xFF);
            expected += static_cast<char>(number & 0xFF);
        } else if (kind == 4) {
            r << Endl();
            expected += '\n';
        } else {
            r << Indent(number & 7);
            expected.append(isAtStart && isDebug ? 2 * static_cast<std::size_t>(number & 7) : 0,
                            ' ');
        }
        isAtStart = kind == 4;
        ExpectEqual(r.atLineStart, isAtStart, "a line starts behind a line end");
    }
    ExpectEqual(page.str(), expected, "what is written to a renderer is in the page");
}

}  // namespace

void Check(std::string const& input) {
    ResetLibrary();
    {
        Feed feed(input);
        CheckRenderer(feed);
        Machine(feed).Run();
    }
    ResetLibrary();
}
