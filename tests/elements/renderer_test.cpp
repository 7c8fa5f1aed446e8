#include "elements/renderer.hpp"

#include <gtest/gtest.h>

#include <climits>
#include <iomanip>
#include <locale>
#include <quillo>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include "support/page_test.hpp"

using namespace Quillo;

namespace {

class RendererTest : public PageTest {
protected:
    std::string Page() const { return page.str(); }

    std::ostringstream page;
    Renderer r{page};
};

// Keeps what had been written at each flush.
class FlushRecorder : public std::stringbuf {
public:
    std::vector<std::string> flushed;

protected:
    int sync() override {
        flushed.push_back(str());
        return 0;
    }
};

class GroupedDigits : public std::numpunct<char> {
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST_F(RendererTest, StartsAtALineStartOutsideAnyElement) {
    EXPECT_EQ(r.out, &page);
    EXPECT_TRUE(r.atLineStart);
    EXPECT_EQ(r.oneLineDepth, 0);
    EXPECT_EQ(r.formName, "");
    EXPECT_EQ(r.focusRef, "");
}

TEST_F(RendererTest, EveryOperationReturnsTheRendererItself) {
    EXPECT_EQ(&(r << "a"), &r);
    EXPECT_EQ(&(r << std::string("b")), &r);
    EXPECT_EQ(&(r << 1), &r);
    EXPECT_EQ(&(r << 'c'), &r);
    EXPECT_EQ(&(r << Endl()), &r);
    EXPECT_EQ(&(r << Indent(1)), &r);
    EXPECT_EQ(&EndLine(r), &r);
    EXPECT_EQ(Page(), "ab1c\n\n");
}

TEST_F(RendererTest, WritesTextAsItStands) {
    r << "<a b=\"c\">&\t'\x01\xff" << std::string("<&>\"") << '<';
    EXPECT_EQ(Page(), "<a b=\"c\">&\t'\x01\xff<&>\"<");
}

TEST_F(RendererTest, WritesEveryByteUnescaped) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) {
        all += static_cast<char>(byte);
        r << static_cast<char>(byte);
    }
    EXPECT_EQ(Page(), all);
    r << all;
    EXPECT_EQ(Page(), all + all);
}

TEST_F(RendererTest, WritesAStringBeyondANulByteAndATextUpToIt) {
    r << std::string("a\0b", 3) << "c\0d";
    EXPECT_EQ(Page(), std::string("a\0bc", 4));
}

TEST_F(RendererTest, WritesNothingOfANullText) {
    r << static_cast<char const*>(nullptr);
    EXPECT_EQ(Page(), "");
    EXPECT_FALSE(r.atLineStart);
}

TEST_F(RendererTest, WritesNumbersInDecimal) {
    r << 0 << ' ' << -1 << ' ' << 1234567 << ' ' << INT_MAX << ' ' << INT_MIN;
    EXPECT_EQ(Page(), "0 -1 1234567 2147483647 -2147483648");
}

TEST_F(RendererTest, NumbersFollowTheStreamsFormatting) {
    page << std::hex << std::showbase;
    r << 255;
    page << std::dec << std::showpos << std::setfill('*') << std::setw(6);
    r << 12;
    page << std::noshowpos;
    page.imbue(std::locale(std::locale::classic(), new GroupedDigits));
    r << 1234567;
    EXPECT_EQ(Page(), "0xff***+121.234.567");
}

TEST_F(RendererTest, AWidthSetOnTheStreamPadsNoText) {
    isDebug = true;
    for (auto* const unitBuffering : {std::nounitbuf, std::unitbuf}) {
        page.str(std::string());
        r.atLineStart = true;
        page << unitBuffering << std::setfill('*') << std::setw(9);
        r << Indent(1) << "a" << std::string("b") << 'c' << Endl() << Indent(2) << "";
        EXPECT_EQ(Page(), "  abc\n    ");
    }
}

TEST_F(RendererTest, EveryWriteLeavesTheLineStart) {
    r << "";
    EXPECT_FALSE(r.atLineStart) << "empty text";
    r.atLineStart = true;
    r << std::string();
    EXPECT_FALSE(r.atLineStart) << "empty string";
    r.atLineStart = true;
    r << 7;
    EXPECT_FALSE(r.atLineStart) << "number";
    r.atLineStart = true;
    r << '\n';
    EXPECT_FALSE(r.atLineStart) << "a newline that is only a byte";
    r.atLineStart = true;
    r << Indent(1);
    EXPECT_FALSE(r.atLineStart) << "indentation";
}

TEST_F(RendererTest, ALineEndWritesOneNewlineAndReturnsToTheLineStart) {
    r << "a" << Endl();
    EXPECT_TRUE(r.atLineStart);
    r << Endl();
    EXPECT_TRUE(r.atLineStart);
    EndLine(r);
    EXPECT_TRUE(r.atLineStart);
    EXPECT_EQ(Page(), "a\n\n\n");
}

TEST_F(RendererTest, ALineEndLooksNeitherAtItsElementNorAtTheOneLineDepth) {
    Endl decorated;
    decorated.SetAttr("id", "x").SetOneLine().SetFocus();
    Endl nothing;
    nothing.impl.reset();
    r.oneLineDepth = 2;
    r << decorated << nothing;
    EXPECT_EQ(Page(), "\n\n");
    EXPECT_EQ(r.oneLineDepth, 2);
}

TEST_F(RendererTest, EachLineEndFlushesTheStreamBehindItsNewlineAndNothingElseDoes) {
    FlushRecorder recorder;
    std::ostream stream(&recorder);
    Renderer flushing(stream);
    flushing << "a" << std::string("b") << 1 << 'c' << Indent(1);
    EXPECT_TRUE(recorder.flushed.empty());
    flushing << Endl() << "d" << Endl();
    EndLine(flushing);
    EXPECT_EQ(recorder.flushed, (std::vector<std::string>{"ab1c\n", "ab1c\nd\n", "ab1c\nd\n\n"}));
}

TEST_F(RendererTest, IndentsByTwoBlanksALevelAtALineStartInDebugMode) {
    struct Row {
        bool debug;
        bool atLineStart;
        int level;
        char const* written;
    };
    Row const rows[] = {
        {true, true, 2, "    "},   {true, true, 1, "  "}, {true, true, 5, "          "},
        {true, true, 0, ""},       {true, true, -3, ""},  {true, true, INT_MIN, ""},
        {true, false, 3, ""},      {true, false, -1, ""}, {false, true, 5, ""},
        {false, true, 0, ""},      {false, true, -3, ""}, {false, false, 5, ""},
        {false, true, INT_MAX, ""}};
    for (Row const& row : rows) {
        SCOPED_TRACE(testing::Message() << row.debug << row.atLineStart << " level " << row.level);
        std::ostringstream line;
        Renderer renderer(line);
        isDebug = row.debug;
        renderer.atLineStart = row.atLineStart;
        renderer << Indent(row.level);
        EXPECT_EQ(line.str(), row.written);
        EXPECT_FALSE(renderer.atLineStart);
    }
}

TEST_F(RendererTest, IndentsALineOnlyOnce) {
    isDebug = true;
    r << Indent(2) << Indent(2) << "x" << Indent(3) << Endl() << Indent(3) << "y";
    EXPECT_EQ(Page(), "    x\n      y");
}

TEST_F(RendererTest, AnIndentThatWroteNothingCountsAsTheStartOfTheLine) {
    r << Indent(5);
    isDebug = true;
    r << Indent(5) << "x" << Endl() << Indent(0) << Indent(2) << "y";
    EXPECT_EQ(Page(), "x\ny");
}

TEST_F(RendererTest, IndentationDependsOnTheCachedSwitchAlone) {
    isDebug = true;
    isDebugInit = false;
    r << Indent(1) << Endl();
    isDebug = false;
    isDebugInit = true;
    r << Indent(1);
    EXPECT_EQ(Page(), "  \n");
}

TEST_F(RendererTest, GoesOnAfterTheStreamHasFailed) {
    page.setstate(std::ios::badbit);
    r << "a" << 1 << Endl();
    EXPECT_TRUE(r.atLineStart);
    page.clear();
    r << "b";
    EXPECT_EQ(Page(), "b");
}

TEST(RendererTypeTest, ARendererIsNotCopiedAndNumbersAreNoIndentation) {
    EXPECT_FALSE(std::is_copy_constructible<Renderer>::value);
    EXPECT_FALSE(std::is_copy_assignable<Renderer>::value);
    EXPECT_FALSE((std::is_convertible<std::ostream&, Renderer>::value));
    EXPECT_FALSE((std::is_convertible<int, Indent>::value));
    EXPECT_EQ(Indent(-4).level, -4);
}

}  // namespace
