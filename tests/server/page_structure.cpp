#include "server/page_structure.hpp"

#include <gumbo.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>
#include <vector>

namespace {

struct EndOutput {
    void operator()(GumboOutput* output) const {
        gumbo_destroy_output(&kGumboDefaultOptions, output);
    }
};

class Writer {
public:
    explicit Writer(std::set<std::string>* rows) : rows_(rows) {}

    std::string Structure(GumboNode const& node) {
        switch (node.type) {
            case GUMBO_NODE_TEXT:
            case GUMBO_NODE_WHITESPACE:
                return isCode_ ? "\"" + std::string(node.v.text.text) + "\"" : "";
            case GUMBO_NODE_CDATA:
            case GUMBO_NODE_COMMENT:
                return "!";
            case GUMBO_NODE_ELEMENT:
            case GUMBO_NODE_TEMPLATE:
                return Element(node.v.element);
            default:
                return Children(node.v.document.children);
        }
    }

private:
    std::string Element(GumboElement const& element) {
        bool const isOuterCode = isCode_;
        isCode_ = element.tag == GUMBO_TAG_SCRIPT || element.tag == GUMBO_TAG_STYLE;
        std::string const text =
            Name(element) + Attributes(element) + "(" + Children(element.children) + ")";
        isCode_ = isOuterCode;
        if (rows_ == nullptr || element.tag != GUMBO_TAG_TR) {
            return text;
        }
        rows_->insert(text);
        return "";
    }

    std::string Children(GumboVector const& children) {
        std::string text;
        for (unsigned i = 0; i < children.length; ++i) {
            text += Structure(*static_cast<GumboNode const*>(children.data[i]));
        }
        return text;
    }

    // A tag that the standard does not know is named as it was written.
    static std::string Name(GumboElement const& element) {
        GumboStringPiece written = element.original_tag;
        gumbo_tag_from_original_text(&written);
        return element.tag != GUMBO_TAG_UNKNOWN ? gumbo_normalized_tagname(element.tag)
                                                : std::string(written.data, written.length);
    }

    static std::string Attributes(GumboElement const& element) {
        std::string text;
        for (unsigned i = 0; i < element.attributes.length; ++i) {
            auto const& attribute = *static_cast<GumboAttribute const*>(element.attributes.data[i]);
            text += std::string(" ") + attribute.name;
            std::string_view const value = attribute.value;
            if (IsAddress(attribute.name)) {
                text += "=" + std::string(value.substr(0, value.find('?')));
            }
        }
        return text;
    }

    static bool IsAddress(std::string_view name) {
        static constexpr std::array<std::string_view, 5> names = {"href", "src", "action",
                                                                  "formaction", "data-source"};
        return std::find(names.begin(), names.end(), name) != names.end();
    }

    std::set<std::string>* rows_;
    bool isCode_ = false;
};

std::string Structure(std::string const& html, std::set<std::string>* rows) {
    std::unique_ptr<GumboOutput, EndOutput> const output(
        gumbo_parse_with_options(&kGumboDefaultOptions, html.data(), html.size()));
    return Writer(rows).Structure(*output->document);
}

}  // namespace

std::string StructureOf(std::string const& html) {
    return Structure(html, nullptr);
}

std::string StructureWithoutRows(std::string const& html, std::set<std::string>& rows) {
    return Structure(html, &rows);
}
