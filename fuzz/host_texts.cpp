// What the host writes so that it can be read again: log lines and phrases; and what it looks at
// before it trusts it, a catalog.
#include <cstdint>
#include <map>

#include "feed.hpp"
#include "host/catalog_file.hpp"
#include "host/phrase_context.hpp"
#include "host/printable_text.hpp"
#include "oracle.hpp"
#include "pieces.hpp"

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

// Reads a catalog to its end as one does that trusts it, and sees whether it can: whether every
// byte that it wants is there, and every number is one that it can do with.
class Reader {
public:
    explicit Reader(std::string const& content) : bytes(content), isBig(bytes[0] == '\x95') {}

    bool CanReadAll() {
        Word(24);  // the head's last, which is there without a hash table, too
        Need(Word(0) == 0x950412de && Word(4) / 65536 < 2);
        std::uint32_t const count = Word(8);
        // A table of nothing has its place too.
        Need(Word(12) <= bytes.size() && Word(16) <= bytes.size());
        for (std::uint64_t i = 0; canRead && i < count; ++i) {
            ReadText(Word(12) + 8 * i);
            ReadText(Word(16) + 8 * i);
        }
        std::uint32_t const hashes = Word(20);
        Need(hashes != 1 && hashes != 2);
        for (std::uint64_t i = 0; canRead && i < hashes; ++i) {
            Need(Word(Word(24) + 4 * i) <= count);
        }
        return canRead;
    }

private:
    void Need(bool holds) { canRead = canRead && holds; }

    unsigned ByteAt(std::uint64_t at) {
        Need(at < bytes.size());
        return canRead ? static_cast<unsigned char>(bytes[static_cast<std::size_t>(at)]) : 0;
    }

    std::uint32_t Word(std::uint64_t at) {
        std::uint32_t word = 0;
        for (unsigned i = 0; i < 4; ++i) {
            word |= ByteAt(at + i) << 8 * (isBig ? 3 - i : i);
        }
        return word;
    }

    void ReadText(std::uint64_t row) {
        std::uint64_t const length = Word(row);
        std::uint64_t const offset = Word(row + 4);
        Need(ByteAt(offset + length) == '\0');
    }

    std::string const& bytes;
    bool isBig;
    bool canRead = true;
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

// A catalog of these texts and of the same ones backwards as their translations, without a fault:
// head, texts, the two tables, and a hash table or none; the texts ahead of the tables or behind
// them, with gaps.
std::string WholeCatalog(Feed& feed, std::vector<std::string> const& texts) {
    bool const isBig = feed.Bit();
    bool const isHashed = feed.Bit();
    bool const areTablesFirst = feed.Bit();
    std::uint32_t const revision = feed.Below(2) << 16 | feed.Below(4);
    std::string const gap(feed.Below(8), 'g');
    auto const count = static_cast<std::uint32_t>(texts.size());
    std::uint32_t const hashes = isHashed ? 3 + feed.Below(16) : 0;

    std::string joined;
    std::vector<std::uint32_t> offsets;
    for (std::string const& text : texts) {
        offsets.push_back(static_cast<std::uint32_t>(joined.size()));
        joined += text + std::string(1, '\0');
    }
    auto const front = static_cast<std::uint32_t>(28 + gap.size());
    auto const textsSize = static_cast<std::uint32_t>(joined.size() + gap.size());
    std::uint32_t const tables = areTablesFirst ? front : front + textsSize;
    std::uint32_t const textsAt = areTablesFirst ? front + 16 * count + 4 * hashes : front;
    std::string table;
    for (std::uint32_t i = 0; i < 2 * count; ++i) {
        std::uint32_t const one = i < count ? i : 2 * count - 1 - i;
        Append(table, static_cast<std::uint32_t>(texts[one].size()), isBig);
        Append(table, textsAt + offsets[one], isBig);
    }
    for (std::uint32_t i = 0; i < hashes; ++i) {
        Append(table, feed.Below(256) % (count + 1), isBig);
    }
    std::string catalog;
    for (std::uint32_t const word : {0x950412deU, revision, count, tables, tables + 8 * count,
                                     hashes, isHashed ? tables + 16 * count : 0}) {
        Append(catalog, word, isBig);
    }
    joined += gap;
    return catalog + gap + (areTablesFirst ? table + joined : joined + table);
}

void CheckCatalog(std::string const& catalog) {
    ExpectEqual(DamageOf(catalog) == nullptr, Reader(catalog).CanReadAll(),
                "catalog: it is whole when a reader that trusts it comes to its end");
}

// One that is whole; and then cut short, and with one byte changed.
void CheckWholeCatalog(Feed& feed, std::vector<std::string> const& texts) {
    std::string catalog = WholeCatalog(feed, texts);
    ExpectEqual(DamageOf(catalog), static_cast<char const*>(nullptr), "catalog: a whole one");
    CheckCatalog(catalog);
    std::size_t const place = (feed.Byte() << 8 | feed.Byte()) % catalog.size();
    CheckCatalog(catalog.substr(0, place));
    catalog[place] = static_cast<char>(feed.Byte());
    CheckCatalog(catalog);
}

}  // namespace

void Check(std::string const& input) {
    Feed feed(input);
    std::string const context = feed.Text();
    std::string const text = feed.Text();
    CheckLine(text);
    CheckPhrase(context, text);
    CheckCatalog(input);
    CheckWholeCatalog(feed, text.empty() ? std::vector<std::string>() : Pieces(text, " \n"));
    CheckCatalog(Catalog(feed, text));
}
