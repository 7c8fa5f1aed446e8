#include "tree_model.hpp"

namespace {

// Writes a page by strings alone.
class ModelWriter {
public:
    explicit ModelWriter(bool isIndenting) : indents(isIndenting) {}

    void Write(ModelNode const& node, int level) {
        switch (node.kind) {
            case ModelNode::Plain:
                WritePlain(node, level);
                break;
            case ModelNode::Text:
                StartLine(level);
                page.html += node.isFiltered && !IsInScript(node)
                                 ? EscapedModel(node.text, page.reports)
                                 : node.text;
                break;
            case ModelNode::Container:
                for (auto const& child : node.children) {
                    Write(*child, level);
                }
                break;
            case ModelNode::Null:
                break;
            case ModelNode::LineEnd:
                EndLine();
                break;
        }
    }

    ModelPage page;

private:
    void StartLine(int level) {
        if (isAtStart && indents) {
            page.html.append(static_cast<std::size_t>(2 * level), ' ');
        }
        isAtStart = false;
    }

    void EndLine() {
        page.html += "\n";
        isAtStart = true;
    }

    static bool IsInScript(ModelNode const& node) {
        for (ModelNode const* up = node.parent; up != nullptr; up = up->parent) {
            if (up->tag == "script") {
                return true;
            }
        }
        return false;
    }

    // A message ends where a text in it has a NUL byte.
    static std::string Cut(std::string const& text) { return text.c_str(); }

    void Report(std::string const& message) { page.reports.push_back("error: Render" + message); }

    void CheckForm(ModelNode const& node) {
        auto const name = node.attrs.find("name");
        if (name == node.attrs.end()) {
            Report(":  each form must have a name");
        } else if (form.empty()) {
            form = name->second;
        } else {
            Report(":  can't have nested forms (" + Cut(form) + " and " + Cut(name->second) + ")");
        }
    }

    void CheckFocus(ModelNode const& node) {
        auto const name = node.attrs.find("name");
        if (node.tag == "form") {
            Report(":  forms can't have focus");
        } else if (form.empty()) {
            Report(": Element with focus needs to be inside a form");
        } else if (name == node.attrs.end()) {
            Report(": Element with focus needs to have a name");
        } else if (focus.empty()) {
            focus = form + "." + name->second;
        } else {
            Report(":  There is more than one element with focus: " + Cut(focus) + " and " +
                   Cut(form + "." + name->second));
        }
    }

    void WritePlain(ModelNode const& node, int level) {
        bool const wasOnOneLine = isOnOneLine;
        if (!wasOnOneLine) {
            StartLine(level);
        }
        isOnOneLine = isOnOneLine || node.isOneLine;
        if (node.tag == "form") {
            CheckForm(node);
        }
        if (node.hasFocus) {
            CheckFocus(node);
        }
        isAtStart = false;
        page.html += "<" + node.tag;
        for (auto const& attr : node.attrs) {
            page.html += " " + attr.first + "=\"" + attr.second + "\"";
        }
        for (auto const& name : node.emptyAttrs) {
            page.html += " " + name + "=\"\"";
        }
        page.html += node.isLeaf ? " >" : ">";
        if (!node.isLeaf) {
            WriteBody(node, level);
            isAtStart = false;
            page.html += "</" + node.tag + ">";
        }
        isOnOneLine = wasOnOneLine;
        if (!isOnOneLine) {
            EndLine();
        }
        if (node.tag == "form") {
            EndForm();
        }
    }

    void WriteBody(ModelNode const& node, int level) {
        if (node.children.empty()) {
            return;
        }
        if (!isOnOneLine) {
            EndLine();
        }
        for (auto const& child : node.children) {
            Write(*child, level + 1);
        }
        if (!isOnOneLine) {
            StartLine(level);
        }
    }

    void EndForm() {
        form.clear();
        if (!focus.empty()) {
            page.html +=
                "<script type=\"text/javascript\">document." + focus + ".focus();</script>";
            EndLine();
        }
    }

    bool indents;
    bool isAtStart = true;
    bool isOnOneLine = false;
    std::string form;
    std::string focus;
};

}  // namespace

std::size_t ModelNode::Size() const {
    std::size_t size = 1;
    for (auto const& child : children) {
        size += child->Size();
    }
    return size;
}

bool ModelNode::Holds(ModelNode const* other) const {
    if (this == other) {
        return true;
    }
    for (auto const& child : children) {
        if (child->Holds(other)) {
            return true;
        }
    }
    return false;
}

ModelPage WriteModel(ModelNode const& root, int level, bool indents) {
    ModelWriter writer(indents);
    writer.Write(root, level);
    return writer.page;
}

std::string EscapedModel(std::string const& text, std::vector<std::string>& reports) {
    std::string escaped;
    for (char const c : std::string(text.c_str())) {
        unsigned const byte = static_cast<unsigned char>(c);
        if (byte == 0x7F || (byte < 0x20 && c != '\t' && c != '\n')) {
            escaped += '_';
            reports.push_back(std::string("warn: Don't know tag for '") + c + "'");
        } else {
            escaped += c == '<'   ? "&lt;"
                       : c == '>' ? "&gt;"
                       : c == '&' ? "&amp;"
                       : c == '"' ? "&quot;"
                                  : std::string(1, c);
        }
    }
    return escaped;
}
