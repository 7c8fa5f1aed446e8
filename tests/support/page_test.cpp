#include "support/page_test.hpp"

#include <cstdlib>
#include <fstream>
#include <sstream>

using namespace Quillo;

namespace {

void ResetProcess() {
    Platform() = RecordingPlatform();
    debugMsgs = Div();
    isDebug = false;
    isDebugInit = false;
    g_language = nullptr;
}

}  // namespace

void (*PageTest::beforeReset)() = [] {};
void (*PageTest::onBegin)() = [] {};

char const holdsWithoutMemory[] = "This has to hold without memory, too.";

PageTest::PageTest() {
    beforeReset();
    ResetProcess();
    onBegin();
}

PageTest::~PageTest() {
    beforeReset();
    ResetProcess();
}

std::string Html(Element const& root, int level) {
    std::ostringstream page;
    Renderer r(page);
    root.impl->Render(r, level);
    return page.str();
}

std::vector<std::string> DebugLines() {
    std::vector<std::string> lines;
    auto const& children = debugMsgs.impl->children;
    EXPECT_EQ(children.size() % 2, 0U) << "a line without a line break";
    for (std::size_t i = 0; i + 1 < children.size(); i += 2) {
        auto const* const text = dynamic_cast<TextImpl const*>(children[i].get());
        EXPECT_NE(text, nullptr);
        EXPECT_NE(dynamic_cast<BrImpl const*>(children[i + 1].get()), nullptr);
        if (text != nullptr) {
            EXPECT_TRUE(text->filter);
            lines.push_back(text->text);
        }
    }
    return lines;
}

std::vector<std::string> DebugMessages() {
    std::vector<std::string> messages;
    for (std::string const& line : DebugLines()) {
        // "At FILE:LINE: MESSAGE"
        EXPECT_EQ(line.compare(0, 3, "At "), 0) << line;
        std::size_t const digits = line.find_first_of("0123456789", line.find(".cpp:"));
        std::size_t const colon = line.find(": ", digits);
        messages.push_back(line.substr(colon + 2));
    }
    return messages;
}

Element Tag(std::string const& tag, bool isLeaf) {
    return Element(boost::shared_ptr<ElementImpl>(new ElementImpl(tag, isLeaf)));
}

void ExpectGolden(std::string const& html, std::string const& name) {
    std::string const path = std::string(QUILLO_GOLDEN_DIR) + "/" + name;
    if (std::getenv("QUILLO_COLLECT_GOLDEN") != nullptr) {
        std::ofstream(path, std::ios::binary) << html;
        return;
    }
    std::ifstream file(path, std::ios::binary);
    ASSERT_TRUE(file) << path << " is missing; './dev golden' collects the golden files anew";
    std::ostringstream golden;
    golden << file.rdbuf();
    EXPECT_EQ(golden.str(), html) << name << " differs; './dev golden' collects the files anew";
}
