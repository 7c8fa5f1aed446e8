// Object queries: how an answer is read.
#include <random>

#include "device/device_fixture.hpp"
#include "support/rounds.hpp"

using namespace Quillo;

namespace {

typedef std::vector<std::vector<std::string>> Rows;

std::string const missing = "warn: GetObject: Missing \\n at end of result string";

std::string Count(std::size_t count, std::size_t attributes) {
    return "warn: GetObject:  Got back unexpected number of attributes: " + std::to_string(count) +
           " instead of " + std::to_string(attributes);
}

struct Reading {
    std::string answer;
    Rows rows;
    Lines messages;
};

class ObjectAnswerTest : public DeviceTest {
protected:
    void Expect(Reading const& reading, std::vector<std::string> const& attrs) {
        Platform() = RecordingPlatform();
        debugMsgs = Div();
        Platform().answer = reading.answer;
        Rows rows = {{"old"}};
        EXPECT_EQ(GetObject(app, ObjectType_Sys, "o", attrs, rows), 0);
        EXPECT_EQ(rows, reading.rows) << ::testing::PrintToString(reading.answer);
        EXPECT_EQ(Platform().Messages(), reading.messages)
            << ::testing::PrintToString(reading.answer);
        Reports();
    }
};

TEST_F(ObjectAnswerTest, AnswersForTwoAttributes) {
    Reading const readings[] = {
        {"", {}, {}},
        {"x\ty\n", {{"x", "y"}}, {}},
        {"x\ty\nz\tw\n", {{"x", "y"}, {"z", "w"}}, {}},

        // empty values
        {"\t\n", {{"", ""}}, {}},
        {"x\t\n", {{"x", ""}}, {}},
        {"\ty\n", {{"", "y"}}, {}},
        {"\t\n\t\n", {{"", ""}, {"", ""}}, {}},

        // no newline at the end
        {"x\ty", {{"x", "y"}}, {missing}},
        {"x\t", {{"x", ""}}, {missing}},
        {"\t", {{"", ""}}, {missing}},
        {"x\ty\nz\tw", {{"x", "y"}, {"z", "w"}}, {missing}},

        // too few values
        {"\n", {{"", ""}}, {Count(1, 2)}},
        {"x\n", {{"x", ""}}, {Count(1, 2)}},
        {"\n\n", {{"", ""}, {"", ""}}, {Count(1, 2), Count(1, 2)}},
        {"x\ty\n\n", {{"x", "y"}, {"", ""}}, {Count(1, 2)}},
        {"\nx\ty\n", {{"", ""}, {"x", "y"}}, {Count(1, 2)}},

        // too many values
        {"x\t\ty\n", {{"x", ""}}, {Count(3, 2)}},
        {"x\ty\t\n", {{"x", "y"}}, {Count(3, 2)}},
        {"\t\t\t\n", {{"", ""}}, {Count(4, 2)}},

        // both: the newline first, then the rows in their order
        {"x", {{"x", ""}}, {missing, Count(1, 2)}},
        {"x\ty\tz", {{"x", "y"}}, {missing, Count(3, 2)}},
        {"\t\t", {{"", ""}}, {missing, Count(3, 2)}},
        {"x\ty\nz", {{"x", "y"}, {"z", ""}}, {missing, Count(1, 2)}},
        {"a\tb\tc\td\nx\ny\tz\nq",
         {{"a", "b"}, {"x", ""}, {"y", "z"}, {"q", ""}},
         {missing, Count(4, 2), Count(1, 2), Count(1, 2)}},

        // the default value is the whole answer or nothing special
        {"Unavailable\n", {{"Unavailable", ""}}, {Count(1, 2)}},
        {"Unavailable ", {{"Unavailable ", ""}}, {missing, Count(1, 2)}},
        {" Unavailable", {{" Unavailable", ""}}, {missing, Count(1, 2)}},
        {"Unavailabl", {{"Unavailabl", ""}}, {missing, Count(1, 2)}},
        {"unavailable", {{"unavailable", ""}}, {missing, Count(1, 2)}},
        {"Unavailable\tUnavailable\n", {{"Unavailable", "Unavailable"}}, {}},

        // every other byte stands for itself
        {"x\r\ty\r\n", {{"x\r", "y\r"}}, {}},
        {" x \t y \n", {{" x ", " y "}}, {}},
        {"%1\t\\n\n", {{"%1", "\\n"}}, {}},
        {"\xC3\xA9\t\xFF\x01\v\f\n", {{"\xC3\xA9", "\xFF\x01\v\f"}}, {}},

        // a NUL ends the answer
        {std::string("\0x\ty\n", 5), {}, {}},
        {std::string("x\ty\n\0z\tw\n", 9), {{"x", "y"}}, {}},
        {std::string("x\ty\0\n", 5), {{"x", "y"}}, {missing}},
        {std::string("x\ty\nz\0\tw\n", 9), {{"x", "y"}, {"z", ""}}, {missing, Count(1, 2)}},
    };
    for (Reading const& reading : readings) {
        Expect(reading, {"a", "b"});
    }
}

TEST_F(ObjectAnswerTest, AnswersForOneAttribute) {
    Reading const readings[] = {
        {"", {}, {}},
        {"\n", {{""}}, {}},
        {"\n\n", {{""}, {""}}, {}},
        {"x\ny\n", {{"x"}, {"y"}}, {}},
        {"x", {{"x"}}, {missing}},
        {"\t", {{""}}, {missing, Count(2, 1)}},
        {"x\ty\n", {{"x"}}, {Count(2, 1)}},
        {"Unavailable\n", {{"Unavailable"}}, {}},
        {"Unavailable\nUnavailable", {{"Unavailable"}, {"Unavailable"}}, {missing}},
    };
    for (Reading const& reading : readings) {
        Expect(reading, {"a"});
    }
}

TEST_F(ObjectAnswerTest, AnswersForTwelveAttributes) {
    std::vector<std::string> const attrs(12, "a");
    Expect({"1\t2\t3\t4\t5\t6\t7\t8\t9\t10\t11\t12\n",
            {{"1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11", "12"}},
            {}},
           attrs);
    Expect({"x\n", {{"x", "", "", "", "", "", "", "", "", "", "", ""}}, {Count(1, 12)}}, attrs);
}

TEST_F(ObjectAnswerTest, AnswersOfSeveralChunks) {
    Expect({Pattern(255) + "\t" + Pattern(300) + "\n" + Pattern(1000) + "\t\n",
            {{Pattern(255), Pattern(300)}, {Pattern(1000), ""}},
            {}},
           {"a", "b"});
}

TEST_F(ObjectAnswerTest, TheWarningsNameTheFunction) {
    Platform().answer = "x";
    Rows rows;
    EXPECT_EQ(GetObject(app, ObjectType_Sys, "o", {"a", "b"}, rows), 0);
    EXPECT_EQ(Reports(),
              (std::vector<Report>{
                  {"warn", "src/device/object_query.cpp", "%s: Missing \\n at end of result string",
                   "GetObject: Missing \\n at end of result string"},
                  {"warn", "src/device/object_query.cpp",
                   "%s:  Got back unexpected number of attributes: %d instead of %d",
                   "GetObject:  Got back unexpected number of attributes: 1 instead of 2"},
              }));
    EXPECT_EQ(Platform().trace.at(6), "loareq_free");
    EXPECT_EQ(Platform().trace.size(), 9U);
}

// Cuts `text` at every `separator`: "a,b," gives "a", "b" and "".
std::vector<std::string> Cut(std::string const& text, char separator) {
    std::vector<std::string> pieces(1);
    for (char c : text) {
        if (c == separator) {
            pieces.emplace_back();
        } else {
            pieces.back() += c;
        }
    }
    return pieces;
}

Reading ReadingOf(std::string const& answer, std::size_t attributes) {
    Reading reading = {answer, {}, {}};
    std::vector<std::string> lines = Cut(answer, '\n');
    if (lines.back().empty()) {
        lines.pop_back();
    } else {
        reading.messages.push_back(missing);
    }
    for (std::string const& line : lines) {
        reading.rows.push_back(Cut(line, '\t'));
        std::size_t const count = reading.rows.back().size();
        if (count != attributes) {
            reading.messages.push_back(Count(count, attributes));
        }
        reading.rows.back().resize(attributes);
    }
    return reading;
}

TEST_F(ObjectAnswerTest, AnyAnswerReadsAsItsLinesAndTheirPieces) {
    std::mt19937 random(20);
    char const alphabet[] = {'\t', '\n', 'a', 'b', '\t', 'c'};
    for (int i = 0; i < Rounds(2000); ++i) {
        std::string answer(random() % (i % 20 == 0 ? 600 : 12), ' ');
        for (char& c : answer) {
            c = alphabet[random() % sizeof alphabet];
        }
        std::size_t const attributes = 1 + random() % 4;
        Expect(ReadingOf(answer, attributes), std::vector<std::string>(attributes, "a"));
        if (HasFailure()) {
            return;
        }
    }
}

}  // namespace
