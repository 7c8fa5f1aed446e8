// What the host writes so that it can be read again: log lines and phrases; and what it looks at
// before it trusts it, a catalog.
#include <cstdint>
#include <map>

#include "feed.hpp"
#include "host/catalog_file.hpp"
#include "host/phrase_context.hpp"
#include "host/printable_text.hpp"
#include "oracle.hpp"

using namespace QuilloHost;

namespace {

int Hex(std::string const& digits) {
    bool const isHex =
        !digits.empty() && digits.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
    return isHex ? std::stoi(digits, nullptr, 16) : -1;
}

// The bytes of a line of the log.
std::string ReadLine(std::string const& line) {
    static std::map<char, char> const letters = {
        {'n', '\n'}, {'t', '\t'}, {'r', '\r'}, {'\\', '\\'}};
    std::string bytes;
    for (std::size_t at = 0; at < line.size(); ++at) {
        if (line[at] != '\\') {
            bytes += line[at];
            continue;
        }
        char const kind = line.at(++at);
        int const code = Hex(line.substr(at + 1, 2));
        Expect(letters.count(kind) == 1 || (kind == 'x' && code >= 0), "log: an escape", line);
        bytes += kind == 'x' ? static_cast<char>(code) : letters.at(kind);
        at += kind == 'x' ? 2 : 0;
    }
    return bytes;
}

void CheckLine(std::string const& bytes) {
    std::string line;
    AppendPrintable(line, bytes);
    for (char const c : line) {
        unsigned const byte = static_cast<unsigned char>(c);
        Expect(byte >= 0x20 && byte != 0x7F, "log: no control byte is left", line);
    }
    ExpectEqual(ReadLine(line), bytes, "log: every line stands for one text");
}

void Replace(std::string& text, std::string const& what, std::string const& by) {
    for (std::size_t at = text.find(what); at != std::string::npos;
         at = text.find(what, at + by.size())) {
        text.replace(at, what.size(), by);
    }
}

std::string ReadHtml(std::string html) {
    Replace(html, "&lt;", "<");
    Replace(html, "&gt;", ">");
    Replace(html, "&quot;", "\"");
    Replace(html, "&#39;", "'");
    Replace(html, "&amp;", "&");
    return html;
}

// A quoted string of a script, as it is read.
std::string ReadScript(std::string const& js) {
    std::string text;
    for (std::size_t at = 0; at < js.size(); ++at) {
        if (js[at] != '\\') {
            text += js[at];
            continue;
        }
        char const kind = js.at(++at);
        int const code = kind == 'u' ? Hex(js.substr(at + 1, 4)) : 0;
        text += kind == 'n'      ? "\n"
                : kind == 'r'    ? "\r"
                : code == 0x2028 ? "\xE2\x80\xA8"
                : code == 0x2029 ? "\xE2\x80\xA9"
                : code == 0x3C   ? "<"
                                 : std::string(1, kind);
        at += kind == 'u' ? 4 : 0;
    }
    return text;
}

std::string ReadPhp(std::string const& php) {
    std::string text;
    for (std::size_t at = 0; at < php.size(); ++at) {
        bool const isEscape =
            php[at] == '\\' && at + 1 < php.size() && (php[at + 1] == '\\' || php[at + 1] == '\'');
        text += php[at += isEscape ? 1 : 0];
    }
    return text;
}

// No quote of a script's string stands without a backslash, and no line ends in it.
void CheckScript(std::string const& js) {
    for (std::size_t at = 0; at < js.size(); ++at) {
        Expect(std::string_view("\"'<\n\r").find(js[at]) == std::string::npos,
               "phrase: no byte that ends a script's string", js);
        at += js[at] == '\\' ? 1 : 0;
    }
    Expect(js.find("\xE2\x80\xA8") == std::string::npos &&
               js.find("\xE2\x80\xA9") == std::string::npos,
           "phrase: no line separator in a script's string", js);
}

void CheckPhrase(std::string const& context, std::string const& phrase) {
    ExpectEqual(InContext("none", phrase), phrase, "phrase: as it stands");
    std::string const html = InContext("html", phrase);
    ExpectEqual(ReadHtml(html), phrase, "phrase: HTML reads it");
    ExpectEqual(html.find_first_of("<>\"'"), std::string::npos, "phrase: no markup in HTML");
    std::string const js = InContext("js", phrase);
    CheckScript(js);
    ExpectEqual(ReadScript(js), phrase, "phrase: a script reads it");
    std::string const both = InContext("both", phrase);
    CheckScript(both);
    ExpectEqual(ReadScript(both), html, "phrase: a script reads HTML");
    ExpectEqual(ReadPhp(InContext("php", phrase)), phrase, "phrase: PHP reads it");
    if (context != "none" && context != "js" && context != "php" && context != "both") {
        ExpectEqual(InContext(context, phrase), html, "phrase: HTML unless told otherwise");
    }
}

// Reads a catalog that was found whole as one does that trusts it.
class Reader {
public:
    explicit Reader(std::string const& content) : bytes(content), isBig(bytes[0] == '\x95') {}

    void ReadAll() const {
        ExpectEqual(Word(0), std::uint32_t{0x950412de}, "catalog: the magic number");
        std::uint32_t const count = Word(8);
        for (std::uint32_t i = 0; i < count; ++i) {
            ReadText(Word(12) + 8 * i);
            ReadText(Word(16) + 8 * i);
        }
        for (std::uint32_t i = 0; i < Word(20); ++i) {
            Expect(Word(Word(24) + 4 * i) <= count, "catalog: a hash is the number of a phrase");
        }
        Expect(Word(20) != 1 && Word(20) != 2, "catalog: a hash table can be looked up in");
    }

private:
    std::uint32_t Word(std::size_t at) const {
        std::uint32_t word = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            word |= std::uint32_t{static_cast<unsigned char>(bytes.at(at + i))}
                    << 8 * (isBig ? 3 - i : i);
        }
        return word;
    }

    void ReadText(std::size_t row) const {
        std::size_t const length = Word(row);
        std::size_t const offset = Word(row + 4);
        Expect(offset <= bytes.size() && length < bytes.size() - offset,
               "catalog: a text lies within it");
        ExpectEqual(bytes.at(offset + length), '\0', "catalog: a text has its end");
    }

    std::string const& bytes;
    bool isBig;
};

void Append(std::string& catalog, std::uint32_t word, bool isBig) {
    for (unsigned i = 0; i < 4; ++i) {
        catalog += static_cast<char>(word >> 8 * (isBig ? 3 - i : i) & 0xFF);
    }
}

// A head that says what the input says, in front of it.
std::string Catalog(Feed& feed, std::string const& rest) {
    bool const isBig = feed.Bit();
    std::string catalog;
    for (std::uint32_t const word : {0x950412deU, feed.Below(3) << 16, feed.Below(4), 28U,
                                     28U + feed.Below(40), feed.Below(8), 28U + feed.Below(64)}) {
        Append(catalog, word, isBig);
    }
    for (unsigned left = feed.Below(32); left > 0; --left) {
        Append(catalog, feed.Below(160), isBig);
    }
    return catalog + rest + std::string(1, '\0');
}

}  // namespace

void Check(std::string const& input) {
    Feed feed(input);
    std::string const context = feed.Text();
    std::string const text = feed.Text();
    CheckLine(text);
    CheckPhrase(context, text);
    for (std::string const& catalog : {input, Catalog(feed, text)}) {
        if (DamageOf(catalog) == nullptr) {
            Reader(catalog).ReadAll();
        }
    }
}
