// Random trees, written by the library and by a second renderer that knows nothing of it.
#include "elements/random_trees.hpp"
#include "support/page_test.hpp"
#include "support/rounds.hpp"

using namespace Quillo;

namespace {

// Writes a page by strings alone.
class SecondRenderer {
public:
    explicit SecondRenderer(bool isIndenting) : indents(isIndenting) {}

    void Write(Node const& node, int level, bool isInScript) {
        switch (node.kind) {
            case Node::Element:
                WriteElement(node, level, isInScript);
                break;
            case Node::Text:
                StartLine(level);
                page += node.isFiltered && !isInScript ? Escaped(node.text) : node.text;
                break;
            case Node::Container:
                for (Node const& child : node.children) {
                    Write(child, level, isInScript);
                }
                break;
            case Node::Null:
                break;
            case Node::LineEnd:
                EndLine();
                break;
        }
    }

    std::string page;
    std::vector<std::string> reports;

private:
    void StartLine(int level) {
        if (isAtStart && indents) {
            page.append(static_cast<std::size_t>(2 * level), ' ');
        }
        isAtStart = false;
    }

    void EndLine() {
        page += "\n";
        isAtStart = true;
    }

    static std::string Escaped(std::string const& text) {
        std::string escaped;
        for (char const c : text) {
            escaped += c == '<'   ? "&lt;"
                       : c == '>' ? "&gt;"
                       : c == '&' ? "&amp;"
                       : c == '"' ? "&quot;"
                                  : std::string(1, c);
        }
        return escaped;
    }

    void Check(Node const& node) {
        bool const isForm = node.tag == "form";
        auto const name = node.attrs.find("name");
        bool const hasName = name != node.attrs.end();
        if (isForm && !hasName) {
            reports.push_back("Render:  each form must have a name");
        } else if (isForm && form.empty()) {
            form = name->second;
        } else if (isForm) {
            reports.push_back("Render:  can't have nested forms (" + form + " and " + name->second +
                              ")");
        }
        if (!node.hasFocus) {
            return;
        }
        if (isForm) {
            reports.push_back("Render:  forms can't have focus");
        } else if (form.empty()) {
            reports.push_back("Render: Element with focus needs to be inside a form");
        } else if (!hasName) {
            reports.push_back("Render: Element with focus needs to have a name");
        } else if (focus.empty()) {
            focus = form + "." + name->second;
        } else {
            reports.push_back("Render:  There is more than one element with focus: " + focus +
                              " and " + form + "." + name->second);
        }
    }

    void WriteElement(Node const& node, int level, bool isInScript) {
        bool const wasOnOneLine = onOneLine;
        if (!wasOnOneLine) {
            StartLine(level);
        }
        onOneLine = onOneLine || node.isOneLine;
        Check(node);
        isAtStart = false;
        page += "<" + node.tag;
        for (auto const& attr : node.attrs) {
            page += " " + attr.first + "=\"" + attr.second + "\"";
        }
        for (auto const& name : node.emptyAttrs) {
            page += " " + name + "=\"\"";
        }
        if (node.isLeaf) {
            page += " >";
        } else {
            page += ">";
            WriteBody(node, level, isInScript);
            isAtStart = false;
            page += "</" + node.tag + ">";
        }
        onOneLine = wasOnOneLine;
        if (!onOneLine) {
            EndLine();
        }
        if (node.tag == "form") {
            form.clear();
            if (!focus.empty()) {
                page += "<script type=\"text/javascript\">document." + focus + ".focus();</script>";
                EndLine();
            }
        }
    }

    void WriteBody(Node const& node, int level, bool isInScript) {
        if (node.children.empty()) {
            return;
        }
        if (!onOneLine) {
            EndLine();
        }
        for (Node const& child : node.children) {
            Write(child, level + 1, isInScript || node.tag == "script");
        }
        if (!onOneLine) {
            StartLine(level);
        }
    }

    bool indents;
    bool isAtStart = true;
    bool onOneLine = false;
    std::string form;
    std::string focus;
};

class RandomTreesTest : public PageTest {
protected:
    RandomTreesTest() : trees(20240607) {}

    RandomTrees trees;
};

TEST_F(RandomTreesTest, AreWrittenByteForByteAsASecondRendererWritesThem) {
    int const rounds = Rounds(4000);
    int reports = 0;
    for (int round = 0; round < rounds; ++round) {
        Node const node = trees.Next();
        for (bool const isIndenting : {false, true}) {
            Platform() = RecordingPlatform();
            debugMsgs = Div();
            isDebug = isIndenting;
            int const level = static_cast<int>(trees.Below(3));
            SecondRenderer second(isIndenting);
            second.Write(node, level, false);
            ASSERT_EQ(Html(MakeElement(node), level), second.page) << round;
            std::vector<std::string> messages;
            for (LogEntry const& entry : Platform().log) {
                messages.push_back(entry.message);
            }
            ASSERT_EQ(messages, second.reports) << round;
            reports += Glb::isize(messages);
        }
    }
    EXPECT_GE(reports, rounds / 4) << "the trees break too few rules to be worth writing";
}

}  // namespace
