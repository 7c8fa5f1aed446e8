#include "request_head.hpp"

#include <strings.h>

#include <algorithm>
#include <charconv>
#include <cstring>

#include "limits.hpp"

namespace QuilloServer {
namespace {

constexpr std::string_view lineEnd = "\r\n";

// A byte of a method or of a field's name (RFC 9110, 5.6.2).
bool IsTokenByte(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
           (byte >= '0' && byte <= '9') ||
           (byte != '\0' && std::strchr("!#$%&'*+-.^_`|~", byte) != nullptr);
}

bool IsToken(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), IsTokenByte);
}

bool IsVisible(char byte) {
    return byte > ' ' && byte < '\x7f';
}

// A byte of a field's value, or of a line as a whole.
bool IsText(char byte) {
    return byte == '\t' || (static_cast<unsigned char>(byte) >= ' ' && byte != '\x7f');
}

bool Equals(std::string_view left, std::string_view right) {
    return left.size() == right.size() && strncasecmp(left.data(), right.data(), left.size()) == 0;
}

std::string_view Trimmed(std::string_view text) {
    std::size_t const first = std::min(text.find_first_not_of(" \t"), text.size());
    text.remove_prefix(first);
    return text.substr(0, text.find_last_not_of(" \t") + 1);
}

// A path, a whole address, or "*" for the server as such (RFC 9112, 3.2).
bool IsTarget(std::string_view text) {
    bool const hasForm =
        text.substr(0, 1) == "/" || text == "*" || Equals(text.substr(0, 7), "http://");
    return hasForm && std::all_of(text.begin(), text.end(), IsVisible);
}

// The version's digits are looked at when the line has the form of a request.
int JudgeRequestLine(std::string_view line) {
    std::size_t const first = line.find(' ');
    std::size_t const last = line.rfind(' ');
    if (first == std::string_view::npos || first == last || !IsToken(line.substr(0, first))) {
        return 400;
    }
    std::string_view const target = line.substr(first + 1, last - first - 1);
    std::string_view const version = line.substr(last + 1);
    if (!IsTarget(target) || version.substr(0, 5) != "HTTP/") {
        return 400;
    }
    if (target.size() > mostTargetBytes) {
        return 414;
    }
    return version == "HTTP/1.1" || version == "HTTP/1.0" ? 0 : 505;
}

// What the header's fields say of the request as a whole.
struct Fields {
    int refusal = 0;
    int count = 0;
    int hosts = 0;
    int lengths = 0;
    std::size_t bodySize = 0;
    bool isContinueExpected = false;
};

void TakeLength(Fields& fields, std::string_view value) {
    ++fields.lengths;
    char const* const end = value.data() + value.size();
    auto const result = std::from_chars(value.data(), end, fields.bodySize);
    if (result.ec == std::errc::result_out_of_range) {
        fields.refusal = 413;
    } else if (result.ec != std::errc() || result.ptr != end || fields.lengths > 1) {
        fields.refusal = 400;
    } else if (fields.bodySize > mostBodyBytes) {
        fields.refusal = 413;
    }
}

// Whether a cookie's value is one quotation mark and no more: libmicrohttpd looks for the other one
// before the value's beginning, and refuses the request in words of its own.
bool HasLoneQuote(std::string_view cookies) {
    while (!cookies.empty()) {
        std::size_t const mark = std::min(cookies.find_first_of("=;,"), cookies.size() - 1);
        bool const hasValue = cookies[mark] == '=';
        cookies.remove_prefix(mark + 1);
        bool isQuoted = false;
        std::size_t size = 0;
        while (hasValue && size < cookies.size() &&
               (isQuoted || (cookies[size] != ';' && cookies[size] != ','))) {
            isQuoted = isQuoted != (cookies[size] == '"');
            ++size;
        }
        if (cookies.substr(0, size) == "\"") {
            return true;
        }
        cookies.remove_prefix(size);
    }
    return false;
}

void TakeField(Fields& fields, std::string_view line) {
    std::size_t const colon = line.find(':');
    std::string_view const name = line.substr(0, colon);
    if (colon == std::string_view::npos || !IsToken(name) ||
        !std::all_of(line.begin(), line.end(), IsText)) {
        fields.refusal = 400;
        return;
    }
    std::string_view const value = Trimmed(line.substr(colon + 1));
    if (Equals(name, "Content-Length")) {
        TakeLength(fields, value);
    } else if (Equals(name, "Transfer-Encoding")) {
        fields.refusal = 411;
    } else if (Equals(name, "Host")) {
        ++fields.hosts;
    } else if (Equals(name, "Expect")) {
        fields.isContinueExpected = Equals(value, "100-continue");
    } else if (Equals(name, "Cookie") && HasLoneQuote(value)) {
        fields.refusal = 400;
    }
}

// `lines` are the fields, each with its line end.
Fields ReadFields(std::string_view lines) {
    Fields fields;
    while (!lines.empty() && fields.refusal == 0) {
        if (++fields.count > mostFields) {
            fields.refusal = 431;
            break;
        }
        std::size_t const end = lines.find(lineEnd);
        TakeField(fields, lines.substr(0, end));
        lines.remove_prefix(end + lineEnd.size());
    }
    return fields;
}

// What can be said before the head's end is there: what is no text will not become a request, and
// what is too long will not become shorter.
int JudgeUnfinished(std::string_view bytes) {
    std::size_t const firstLine = bytes.find('\n');
    std::string_view const line = bytes.substr(0, firstLine);
    if (!line.empty() && !IsTokenByte(line.front())) {
        return 400;
    }
    if (firstLine == std::string_view::npos && line.size() > mostTargetBytes + 64) {
        return 414;
    }
    if (firstLine != std::string_view::npos && (line.empty() || line.back() != '\r')) {
        return 400;
    }
    return bytes.size() > mostHeadBytes ? 431 : 0;
}

}  // namespace

HeadJudgement JudgeHead(std::string_view bytes) {
    HeadJudgement judgement;
    std::size_t const end = bytes.find("\r\n\r\n");
    if (end == std::string_view::npos || end + 4 > mostHeadBytes) {
        judgement.refusal = JudgeUnfinished(bytes);
        return judgement;
    }
    std::size_t const firstEnd = bytes.find(lineEnd);
    std::string_view const requestLine = bytes.substr(0, firstEnd);
    std::size_t const fieldsAt = firstEnd + lineEnd.size();
    Fields const fields = ReadFields(bytes.substr(fieldsAt, end + lineEnd.size() - fieldsAt));
    judgement.refusal = JudgeRequestLine(requestLine);
    if (judgement.refusal == 0) {
        judgement.refusal = fields.refusal;
    }
    if (judgement.refusal == 0 && fields.hosts != 1) {
        judgement.refusal = 400;
    }
    judgement.size = end + 4 + fields.bodySize;
    judgement.isContinueExpected = fields.isContinueExpected;
    return judgement;
}

}  // namespace QuilloServer
