// What a stream sees of a page: compared with a plain transcription of the rules, which writes each
// piece by a call of its own, over streams that fail at every byte and in every way.
#include <pthread.h>

#include <sstream>
#include <thread>
#include <tuple>

#include "elements/random_trees.hpp"
#include "support/page_test.hpp"
#include "support/rounds.hpp"

using namespace Quillo;

namespace {

// The rules, piece by piece, by the stream's own operations.
class PlainRendering {
public:
    explicit PlainRendering(std::ostream& stream) : r(stream) {}

    void Write(ElementImpl const& element, int level) {
        if (auto const* const text = dynamic_cast<TextImpl const*>(&element)) {
            WriteText(*text, level);
        } else if (dynamic_cast<ContainerImpl const*>(&element) != nullptr) {
            for (auto const& child : element.children) {
                Write(*child, level);
            }
        } else if (dynamic_cast<EndlImpl const*>(&element) != nullptr) {
            EndLine();
        } else if (dynamic_cast<NullImpl const*>(&element) == nullptr) {
            WriteElement(element, level);
        }
    }

    Renderer r;

private:
    PlainRendering& operator<<(std::string const& piece) {
        r.out->write(piece.data(), static_cast<std::streamsize>(piece.size()));
        r.atLineStart = false;
        return *this;
    }

    void EndLine() {
        *r.out << std::endl;
        r.atLineStart = true;
    }

    void StartLine(int level) {
        bool const isIndented = r.atLineStart && isDebug;
        r.atLineStart = false;
        for (int i = 0; isIndented && i < level; ++i) {
            r.out->write("  ", 2);
        }
    }

    void WriteText(TextImpl const& text, int level) {
        bool isInScript = false;
        for (ElementImpl const* up = text.parent; up != nullptr; up = up->parent) {
            isInScript = isInScript || up->tag == "script";
        }
        StartLine(level);
        *this << (text.filter && !isInScript ? Filter(text.text) : text.text);
    }

    void WriteElement(ElementImpl const& element, int level) {
        bool const isForm = element.tag == "form";
        auto const name = element.attrs.find("name");
        bool const hasName = name != element.attrs.end();
        if (r.oneLineDepth == 0) {
            StartLine(level);
        }
        r.oneLineDepth += element.oneLine ? 1 : 0;
        if (isForm && hasName && r.formName.empty()) {
            r.formName = name->second;
        }
        if (element.hasFocus && !isForm && !r.formName.empty() && hasName && r.focusRef.empty()) {
            r.focusRef = r.formName + "." + name->second;
        }
        *this << "<" << element.tag;
        for (auto const& attribute : element.attrs) {
            *this << " " << attribute.first << "=\"" << attribute.second << "\"";
        }
        for (auto const& empty : element.emptyAttrs) {
            *this << " " << empty << "=\"\"";
        }
        *this << (element.isLeaf ? " >" : ">");
        if (!element.isLeaf) {
            WriteBody(element, level);
            *this << "</" << element.tag << ">";
        }
        r.oneLineDepth -= element.oneLine ? 1 : 0;
        if (r.oneLineDepth == 0) {
            EndLine();
        }
        if (isForm) {
            r.formName.clear();
            if (!r.focusRef.empty()) {
                *this << "<script type=\"text/javascript\">document." << r.focusRef
                      << ".focus();</script>";
                EndLine();
            }
        }
    }

    void WriteBody(ElementImpl const& element, int level) {
        if (element.children.empty()) {
            return;
        }
        if (r.oneLineDepth == 0) {
            EndLine();
        }
        for (auto const& child : element.children) {
            Write(*child, level + 1);
        }
        if (r.oneLineDepth == 0) {
            StartLine(level);
        }
    }
};

enum class Fault { None, ShortWrite, ThrowingWrite, FailedFlush, ThrowingFlush };

struct Refusal {};

// Takes so many bytes, or so many flushes, and then shows its fault for good.
class FaultyBuffer : public std::streambuf {
public:
    FaultyBuffer(Fault kind, std::size_t firstFault) : fault(kind), limit(firstFault) {}

    std::string bytes;
    std::vector<std::size_t> flushes;  // how many bytes there were at each

protected:
    int_type overflow(int_type byte) override {
        if (bytes.size() == limit && fault == Fault::ShortWrite) {
            return traits_type::eof();
        }
        if (bytes.size() == limit && fault == Fault::ThrowingWrite) {
            throw Refusal();
        }
        bytes += traits_type::to_char_type(byte);
        return byte;
    }

    int sync() override {
        flushes.push_back(bytes.size());
        if (flushes.size() > limit && fault == Fault::ThrowingFlush) {
            throw Refusal();
        }
        bool const hasFailed = flushes.size() > limit && fault == Fault::FailedFlush;
        return hasFailed ? -1 : 1;  // any other number is a success
    }

private:
    Fault const fault;
    std::size_t const limit;
};

struct Setting {
    Fault fault = Fault::None;
    std::size_t limit = 0;
    std::ios_base::iostate exceptions = std::ios_base::goodbit;
    std::ios_base::iostate state = std::ios_base::goodbit;
    bool isTied = false;
    bool isUnitBuffered = false;
};

// Everything that can be known of a page when it has been written, or could not be.
struct Outcome {
    std::string bytes;
    std::vector<std::size_t> flushes;
    std::vector<std::size_t> tiedFlushes;
    std::ios_base::iostate state;
    char const* error;
    bool isAtLineStart;
    int oneLineDepth;

    bool operator==(Outcome const& other) const {
        return std::tie(bytes, flushes, tiedFlushes, state, isAtLineStart, oneLineDepth) ==
                   std::tie(other.bytes, other.flushes, other.tiedFlushes, other.state,
                            other.isAtLineStart, other.oneLineDepth) &&
               std::string(error) == other.error;
    }
};

void PrintTo(Outcome const& outcome, std::ostream* out) {
    *out << ::testing::PrintToString(outcome.bytes) << " flushed at "
         << ::testing::PrintToString(outcome.flushes) << ", tied at "
         << ::testing::PrintToString(outcome.tiedFlushes) << ", state " << outcome.state << ", "
         << outcome.error << ", " << (outcome.isAtLineStart ? "at line start" : "in a line")
         << ", one-line depth " << outcome.oneLineDepth;
}

template <class Write>
Outcome Written(Setting const& setting, Write const& write) {
    FaultyBuffer buffer(setting.fault, setting.limit);
    FaultyBuffer tiedBuffer(Fault::None, 0);
    std::ostream stream(&buffer);
    std::ostream tied(&tiedBuffer);
    stream.setstate(setting.state);
    stream.exceptions(setting.exceptions & ~setting.state);
    if (setting.isTied) {
        stream.tie(&tied);
    }
    if (setting.isUnitBuffered) {
        stream << std::unitbuf;
    }
    char const* error = "";
    bool isAtLineStart = false;
    int oneLineDepth = 0;
    write(stream, [&](Renderer& r, auto const& page) {
        try {
            page();
        } catch (std::ios_base::failure const&) {
            error = "a failure of the stream";
        } catch (Refusal const&) {
            error = "the buffer's own exception";
        }
        isAtLineStart = r.atLineStart;
        oneLineDepth = r.oneLineDepth;
    });
    return {buffer.bytes, buffer.flushes, tiedBuffer.flushes, stream.rdstate(),
            error,        isAtLineStart,  oneLineDepth};
}

class StreamsTest : public PageTest {
protected:
    StreamsTest() : trees(20241107) {}

    static void Compare(Element const& tree, Setting const& setting) {
        Outcome const expected = Written(setting, [&](std::ostream& stream, auto const& watch) {
            PlainRendering plain(stream);
            watch(plain.r, [&] { plain.Write(*tree.impl, 0); });
        });
        Outcome const found = Written(setting, [&](std::ostream& stream, auto const& watch) {
            Renderer r(stream);
            watch(r, [&] { tree.impl->Render(r, 0); });
        });
        ASSERT_EQ(found, expected) << "fault " << static_cast<int>(setting.fault) << " at "
                                   << setting.limit << ", exceptions " << setting.exceptions;
    }

    // A fault at every byte, or at every flush, until there is none.
    void CompareAtEveryPlace(Fault fault, std::ios_base::iostate exceptions) {
        for (int round = 0; round < Rounds(60); ++round) {
            Element const tree = MakeElement(trees.Next());
            isDebug = round % 3 == 0;
            std::size_t const size = Html(tree).size();
            for (std::size_t limit = 0; limit <= size; ++limit) {
                Setting setting;
                setting.fault = fault;
                setting.limit = limit;
                setting.exceptions = exceptions;
                ASSERT_NO_FATAL_FAILURE(Compare(tree, setting)) << Html(tree);
            }
        }
    }

    RandomTrees trees;
};

constexpr std::ios_base::iostate masks[] = {std::ios_base::goodbit, std::ios_base::badbit,
                                            std::ios_base::failbit,
                                            std::ios_base::badbit | std::ios_base::failbit};

TEST_F(StreamsTest, AGoodStreamGetsTheSameBytesAndFlushes) {
    for (int round = 0; round < Rounds(2000); ++round) {
        isDebug = round % 2 == 0;
        ASSERT_NO_FATAL_FAILURE(Compare(MakeElement(trees.Next()), Setting()));
    }
}

TEST_F(StreamsTest, AStreamThatTakesNoMoreIsLeftInTheSameState) {
    for (std::ios_base::iostate const mask : masks) {
        CompareAtEveryPlace(Fault::ShortWrite, mask);
    }
}

TEST_F(StreamsTest, AStreamWhoseBufferThrowsIsLeftInTheSameState) {
    for (std::ios_base::iostate const mask : masks) {
        CompareAtEveryPlace(Fault::ThrowingWrite, mask);
    }
}

TEST_F(StreamsTest, AStreamThatCannotFlushIsLeftInTheSameState) {
    for (std::ios_base::iostate const mask : masks) {
        CompareAtEveryPlace(Fault::FailedFlush, mask);
        CompareAtEveryPlace(Fault::ThrowingFlush, mask);
    }
}

TEST_F(StreamsTest, ATiedStreamIsFlushedBeforeEachPiece) {
    Setting setting;
    setting.isTied = true;
    for (int round = 0; round < Rounds(200); ++round) {
        ASSERT_NO_FATAL_FAILURE(Compare(MakeElement(trees.Next()), setting));
    }
}

TEST_F(StreamsTest, AUnitBufferedStreamIsFlushedAfterEachPiece) {
    Setting setting;
    setting.isUnitBuffered = true;
    for (int round = 0; round < Rounds(200); ++round) {
        ASSERT_NO_FATAL_FAILURE(Compare(MakeElement(trees.Next()), setting));
    }
}

TEST_F(StreamsTest, AStreamThatHasFailedBeforeGetsNothing) {
    for (std::ios_base::iostate const state :
         {std::ios_base::badbit, std::ios_base::failbit, std::ios_base::eofbit}) {
        Setting setting;
        setting.state = state;
        for (int round = 0; round < Rounds(50); ++round) {
            ASSERT_NO_FATAL_FAILURE(Compare(MakeElement(trees.Next()), setting));
        }
    }
}

TEST_F(StreamsTest, TagsLongerThanAnyBufferAreWrittenWhole) {
    for (std::size_t const size : {100U, 255U, 256U, 500U, 512U, 513U, 1000U, 5000U}) {
        Div tree;
        tree.SetAttr("a", std::string(size, 'x')).SetAttr("b", "y").SetEmptyAttr("c");
        tree << Tag(std::string(size, 't')) << Text(std::string(size, '<'), true);
        std::size_t const length = Html(tree).size();
        for (Fault const fault : {Fault::ShortWrite, Fault::ThrowingWrite}) {
            for (std::ios_base::iostate const mask : masks) {
                for (std::size_t limit = 0; limit <= length; limit += 1 + limit / 50) {
                    Setting setting;
                    setting.fault = fault;
                    setting.limit = limit;
                    setting.exceptions = mask;
                    ASSERT_NO_FATAL_FAILURE(Compare(tree, setting));
                }
            }
        }
    }
}

TEST_F(StreamsTest, PiecesOfEveryLengthAreWrittenWhole) {
    std::string const letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    for (int size = 1; size <= Rounds(62); ++size) {
        std::string const piece = letters.substr(0, static_cast<std::size_t>(size));
        Element const tree = Tag(piece).SetAttr(piece, piece) << Text(piece, true);
        EXPECT_EQ(Html(tree), '<' + piece + ' ' + piece + "=\"" + piece + "\">\n" + piece + "</" +
                                  piece + ">\n");
    }
}

TEST_F(StreamsTest, TextsThatAboutFillABufferAreWrittenWhole) {
    for (int size = 0; size < Rounds(600); ++size) {
        std::string const text(static_cast<std::size_t>(size), 'x');
        EXPECT_EQ(Html(Div() << Text(text, true)), "<div>\n" + text + "</div>\n");
        EXPECT_EQ(Html(Br().SetAttr("id", text)), "<br id=\"" + text + "\" >\n");
    }
}

TEST_F(StreamsTest, AChildThatTheReportOfTheLastTextAddsIsWrittenToo) {
    for (std::string const& text : {std::string("\x01"), std::string(200, 'x') + '\x01'}) {
        Div const page;
        page << Text(text, true);
        int entries = 0;
        Platform().onLogEntry = [&] {
            if (++entries == 1) {
                page << Br();
            }
        };
        std::string const written = text.substr(0, text.size() - 1) + "_";
        EXPECT_EQ(Html(page), "<div>\n" + written + "<br >\n</div>\n");
    }
}

TEST_F(StreamsTest, AStreamThatAReportDeclaresFailedGetsNothingMore) {
    for (std::string const& text : {std::string("\x01"), std::string(200, 'x') + '\x01'}) {
        for (Element const& page : {Div() << Text(text, true), Div() << Text(text, true) << Br()}) {
            std::ostringstream stream;
            Platform().onLogEntry = [&] { stream.setstate(std::ios_base::failbit); };
            Renderer r(stream);
            page.impl->Render(r, 0);
            EXPECT_EQ(stream.str(), "<div>\n");
        }
    }
}

TEST_F(StreamsTest, AStreamThatAReportMakesUnitBufferedGetsAllOfThePage) {
    std::ostringstream stream;
    Platform().onLogEntry = [&] { stream << std::unitbuf; };
    Renderer r(stream);
    (Div() << Text("b\x01z\x01", true)).impl->Render(r, 0);
    EXPECT_EQ(stream.str(), "<div>\nb_z_</div>\n");
}

TEST_F(StreamsTest, AReportMayTakeTheBufferOfTheStreamAway) {
    std::ostringstream page;
    std::ostream stream(page.rdbuf());
    Platform().onLogEntry = [&] { stream.rdbuf(nullptr); };
    Renderer r(stream);
    Text("\x01", true).impl->Render(r, 0);
    EXPECT_EQ(page.str(), "");
    EXPECT_TRUE(stream.bad());
}

TEST_F(StreamsTest, AStreamThatAReportOfATagMakesFailGetsNeitherTagNorText) {
    std::ostringstream stream;
    Platform().onLogEntry = [&] { stream.setstate(std::ios_base::failbit); };
    Renderer r(stream);
    (Tag("form") << Text("text", false)).impl->Render(r, 0);
    EXPECT_EQ(stream.str(), "");
}

// Refuses one write, and takes what comes behind it.
class RefusingBuffer : public std::streambuf {
public:
    explicit RefusingBuffer(int writesTaken) : taken(writesTaken) {}
    std::string text;

private:
    std::streamsize xsputn(char const* bytes, std::streamsize count) override {
        if (taken-- == 0) {
            return 0;
        }
        text.append(bytes, static_cast<std::size_t>(count));
        return count;
    }
    int_type overflow(int_type) override { return traits_type::eof(); }

    int taken;
};

TEST_F(StreamsTest, WhatStandsBehindARefusedWriteIsNotWritten) {
    isDebug = true;  // for the indentation
    for (std::size_t const size : {300U, 600U}) {
        std::string const value(size, 'x');
        Element const tree =
            Div().SetAttr("a", value).SetAttr("b", "y").SetAttr("c", value).SetAttr("d", "z")
            << Br();
        std::string const page = Html(tree);
        std::string text;
        for (int writes = 0; text != page; ++writes) {
            RefusingBuffer buffer(writes);
            std::ostream stream(&buffer);
            Renderer r(stream);
            tree.impl->Render(r, 0);
            text = buffer.text;
            ASSERT_EQ(text, page.substr(0, text.size())) << writes;
            ASSERT_EQ(stream.bad(), text != page) << writes;
        }
    }
}

class CountingBuffer : public std::streambuf {
public:
    int writes = 0;

protected:
    std::streamsize xsputn(char const*, std::streamsize count) override {
        ++writes;
        return count;
    }
};

int WritesOf(Element const& element) {
    CountingBuffer buffer;
    std::ostream stream(&buffer);
    Renderer r(stream);
    element.impl->Render(r, 0);
    return buffer.writes;
}

TEST_F(StreamsTest, ATagIsWrittenWithItsLineEndAtOnce) {
    EXPECT_EQ(WritesOf(Br().SetAttr("id", "line").SetEmptyAttr("class")), 1);
    EXPECT_EQ(WritesOf(Div()), 2);
    EXPECT_EQ(WritesOf(Div() << Br()), 3);
}

TEST_F(StreamsTest, ATextIsWrittenAtOnceWhateverItBecomes) {
    EXPECT_EQ(WritesOf(Text("", true)), 0);
    for (int size = 1; size < Rounds(600); ++size) {
        std::string const text(static_cast<std::size_t>(size), '"');
        ASSERT_EQ(WritesOf(Text(text, true)), 1) << size;
    }
}

TEST_F(StreamsTest, EveryByteOfATextIsWrittenAsFilterHasIt) {
    for (int byte = 0; byte < Rounds(0x100); ++byte) {
        for (std::size_t length : {1U, 20U, 200U}) {
            std::string const text =
                std::string(length, 'a') + static_cast<char>(byte) + std::string(length, 'b');
            EXPECT_EQ(Html(Text(text, true)), Filter(text)) << byte;
        }
    }
}

TEST_F(StreamsTest, TheTextThatEndsAnElementIsWrittenWithTheTagBehindIt) {
    int const byItself = QUILLO_SMALL;  // a small library has the plain way alone
    EXPECT_EQ(WritesOf(Div() << Text("plain", false)), 2 + byItself);
    EXPECT_EQ(WritesOf(Div() << Text("<>", true)), 2 + byItself);
    EXPECT_EQ(WritesOf(Div() << Text("one", false) << Text("two", false)), 3 + byItself);
    EXPECT_EQ(WritesOf(Div() << Text("one", false) << Br()), 4);
}

TEST_F(StreamsTest, ATextThatStandsInAnElementTwiceIsWrittenTwice) {
    Text const text("one", false);
    EXPECT_EQ(Html(Div() << text << text), "<div>\noneone</div>\n");
}

struct LoudText : TextImpl {
    LoudText() : TextImpl("loud", false) {}
    void Render(Renderer& r, int) const override { r << "LOUD"; }
};

TEST_F(StreamsTest, ATextOfAPagesOwnKindThatEndsAnElementWritesItself) {
    EXPECT_EQ(Html(Div() << Element(boost::shared_ptr<ElementImpl>(new LoudText))),
              "<div>\nLOUD</div>\n");
}

// Takes the bytes, and declares its stream failed.
class DeclaringBuffer : public std::streambuf {
public:
    std::ostream* stream = nullptr;
    int flushes = 0;

private:
    std::streamsize xsputn(char const*, std::streamsize count) override {
        stream->setstate(std::ios_base::failbit);
        return count;
    }
    int_type overflow(int_type byte) override {
        stream->setstate(std::ios_base::failbit);
        return byte;
    }
    int sync() override {
        ++flushes;
        return 0;
    }
};

TEST_F(StreamsTest, AStreamThatItsBufferDeclaresFailedIsNotFlushed) {
    DeclaringBuffer buffer;
    std::ostream stream(&buffer);
    buffer.stream = &stream;
    Renderer r(stream);
    (Div() << Br()).impl->Render(r, 0);
    EXPECT_EQ(buffer.flushes, 0);
    EXPECT_EQ(stream.rdstate(), std::ios_base::failbit);
}

// Ends its thread at the first byte.
class EndingBuffer : public std::streambuf {
    int_type overflow(int_type) override { pthread_exit(nullptr); }
};

TEST_F(StreamsTest, AThreadThatEndsWhileAPageIsWrittenIsUnwound) {
    bool isUnwound = false;
    std::ios_base::iostate state = std::ios_base::goodbit;
    std::thread([&] {
        EndingBuffer buffer;
        std::ostream stream(&buffer);
        boost::shared_ptr<void> const onUnwinding(nullptr, [&](void*) {
            isUnwound = true;
            state = stream.rdstate();
        });
        Renderer r(stream);
        Div().impl->Render(r, 0);
    }).join();
    EXPECT_TRUE(isUnwound);
    EXPECT_EQ(state, std::ios_base::badbit);
}

}  // namespace
