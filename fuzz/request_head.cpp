// `JudgeHead` against a second reader of heads, and against laws of what comes in pieces.
#include <request_head.hpp>

#include <algorithm>
#include <cctype>

#include "feed.hpp"
#include "limits.hpp"
#include "oracle.hpp"

using namespace QuilloServer;

namespace {

typedef std::vector<std::string> Texts;

// The bytes of a token (RFC 9110, 5.6.2).
std::string const tokenBytes =
    "!#$%&'*+-.^_`|~0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

bool IsOf(std::string const& text, std::string const& bytes) {
    return !text.empty() && text.find_first_not_of(bytes) == std::string::npos;
}

std::string Lowered(std::string text) {
    for (char& c : text) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    }
    return text;
}

std::string VisibleBytes() {
    std::string bytes;
    for (char c = '!'; c <= '~'; ++c) {
        bytes += c;
    }
    return bytes;
}

std::string const visibleBytes = VisibleBytes();

// The status that a request line is refused with; 0: it is one.
int RefusalOf(std::string const& line) {
    Texts words = {""};
    for (char const c : line) {
        if (c == ' ') {
            words.emplace_back();
        } else {
            words.back() += c;
        }
    }
    if (words.size() != 3 || !IsOf(words[0], tokenBytes) || !IsOf(words[1], visibleBytes) ||
        words[2].compare(0, 5, "HTTP/") != 0) {
        return 400;
    }
    bool const isAbsolute = Lowered(words[1].substr(0, 7)) == "http://";
    if (words[1] != "*" && words[1][0] != '/' && !isAbsolute) {
        return 400;
    }
    if (words[1].size() > mostTargetBytes) {
        return 414;
    }
    return words[2] == "HTTP/1.1" || words[2] == "HTTP/1.0" ? 0 : 505;
}

struct Seen {
    int refusal = 0;
    std::size_t bodySize = 0;
    int hosts = 0;
    int lengths = 0;
    bool isContinueExpected = false;
};

void SeeLength(std::string const& value, Seen& seen) {
    bool const isNumber = IsOf(value, "0123456789");
    std::string const digits = value.substr(std::min(value.find_first_not_of('0'), value.size()));
    ++seen.lengths;
    if (!isNumber) {
        // A number too large for any machine is that, whatever stands behind it.
        std::size_t const end = std::min(value.find_first_not_of("0123456789"), value.size());
        std::size_t const zeros = std::min(value.find_first_not_of('0'), end);
        bool const isHuge = end - zeros > 20 ||
                            (end - zeros == 20 && value.substr(zeros, 20) > "18446744073709551615");
        seen.refusal = isHuge ? 413 : 400;
    } else if (digits.size() > 20 || (digits.size() == 20 && digits > "18446744073709551615")) {
        seen.refusal = 413;
    } else if (seen.lengths > 1) {
        seen.refusal = 400;
    } else if (digits.size() > 5 || (!digits.empty() && std::stoul(digits) > mostBodyBytes)) {
        seen.refusal = 413;
    } else {
        seen.bodySize = digits.empty() ? 0 : std::stoul(digits);
    }
}

// Whether the value of one of the cookies is a quotation mark alone. A comma or a semicolon between
// two of them is part of a value.
bool HasLoneQuote(std::string const& cookies) {
    bool isValue = false, isQuoted = false;
    std::string value;
    for (char const c : cookies + ";") {
        if ((c == ';' || c == ',') && !isQuoted) {
            if (isValue && value == "\"") {
                return true;
            }
            isValue = false;
        } else if (isValue) {
            value += c;
            isQuoted = isQuoted != (c == '"');
        } else if (c == '=') {
            isValue = true;
            value.clear();
        }
    }
    return isValue && value == "\";";
}

void SeeField(std::string const& line, Seen& seen) {
    std::size_t const colon = line.find(':');
    bool const isText = std::all_of(line.begin(), line.end(), [](char c) {
        unsigned char const byte = static_cast<unsigned char>(c);
        return c == '\t' || (byte >= 0x20 && byte != 0x7F);
    });
    if (colon == std::string::npos || !IsOf(line.substr(0, colon), tokenBytes) || !isText) {
        seen.refusal = 400;
        return;
    }
    std::string const name = Lowered(line.substr(0, colon));
    std::string value = line.substr(colon + 1);
    value.erase(0, std::min(value.find_first_not_of(" \t"), value.size()));
    value.erase(value.find_last_not_of(" \t") + 1);
    if (name == "content-length") {
        SeeLength(value, seen);
    } else if (name == "transfer-encoding") {
        seen.refusal = 411;
    } else if (name == "host") {
        ++seen.hosts;
    } else if (name == "expect") {
        seen.isContinueExpected = Lowered(value) == "100-continue";
    } else if (name == "cookie" && HasLoneQuote(value)) {
        seen.refusal = 400;
    }
}

// The judgement of a head that is there as a whole; `head` ends with its empty line.
HeadJudgement ByTheRules(std::string const& head) {
    Texts lines;
    for (std::size_t at = 0; at < head.size() - 2;) {
        std::size_t const end = head.find("\r\n", at);
        lines.push_back(head.substr(at, end - at));
        at = end + 2;
    }
    Seen seen;
    for (std::size_t i = 1; i < lines.size() && seen.refusal == 0; ++i) {
        if (i > static_cast<std::size_t>(mostFields)) {
            seen.refusal = 431;
        } else {
            SeeField(lines[i], seen);
        }
    }
    int refusal = RefusalOf(lines[0]);
    refusal = refusal != 0 ? refusal : seen.refusal;
    refusal = refusal == 0 && seen.hosts != 1 ? 400 : refusal;
    HeadJudgement judgement;
    judgement.refusal = refusal;
    judgement.size = head.size() + seen.bodySize;
    judgement.isContinueExpected = seen.isContinueExpected;
    return judgement;
}

void CheckWhole(std::string const& head) {
    HeadJudgement const judged = JudgeHead(head);
    HeadJudgement const expected = ByTheRules(head);
    ExpectEqual(judged.refusal, expected.refusal, "JudgeHead: the status of the refusal");
    if (expected.refusal == 0) {
        ExpectEqual(judged.size, expected.size, "JudgeHead: the size of head and body");
        ExpectEqual(judged.isContinueExpected, expected.isContinueExpected,
                    "JudgeHead: whether the body is held back");
        Expect(judged.size <= mostHeadBytes + mostBodyBytes, "JudgeHead: no more than is allowed");
    }
    HeadJudgement const followed = JudgeHead(head + "\r\n\r\nGET / HTTP/1.1\r\n\r\n");
    ExpectEqual(followed.refusal, judged.refusal, "JudgeHead: what follows changes nothing");
    ExpectEqual(followed.size, judged.size, "JudgeHead: the first request is judged");
}

// What came so far of a request is never refused that would be taken as a whole.
void CheckPieces(std::string const& bytes) {
    HeadJudgement const whole = JudgeHead(bytes);
    for (std::size_t size = 0; size < bytes.size(); size += 1 + size / 4) {
        HeadJudgement const part = JudgeHead(std::string(bytes, 0, size));
        Expect(part.refusal == 0 || whole.refusal != 0,
               "JudgeHead: a refused beginning is refused as a whole",
               std::string_view(bytes).substr(0, size));
        Expect(part.refusal == 0 || part.size == 0 || part.refusal == whole.refusal,
               "JudgeHead: a head that is there is judged for good");
    }
}

}  // namespace

void Check(std::string const& input) {
    Feed feed(input);
    unsigned const kind = feed.Below(4);
    unsigned const repeats = feed.Byte();
    std::string bytes = feed.Rest();
    if (kind == 2) {
        bytes = "GET / HTTP/1.1\r\nHost: a\r\n" + bytes + "\r\n\r\n";
    } else if (kind == 3) {
        std::string const line = bytes.substr(0, 90);
        bytes = "GET / HTTP/1.1\r\nHost: a\r\n";
        for (unsigned i = 0; i < repeats; ++i) {
            bytes += line + "\r\n";
        }
        bytes += "\r\n";
    }
    CheckPieces(bytes);
    std::size_t const end = bytes.find("\r\n\r\n");
    if (end != std::string::npos && end + 4 <= mostHeadBytes) {
        CheckWhole(bytes.substr(0, end + 4));
    }
}
