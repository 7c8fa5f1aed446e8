// Percent encoding and decoding, and backslashes, against their rules and back.
#include <algorithm>
#include <cstdlib>

#include "feed.hpp"
#include "library.hpp"
#include "oracle.hpp"

using namespace Quillo;

namespace {

std::string const safeBytes = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz/._-";
std::string const hexDigits = "0123456789abcdefABCDEF";

std::string Encoded(std::string const& text) {
    std::string encoded;
    for (char const c : text) {
        bool const isSafe = safeBytes.find(c) != std::string::npos;
        char escape[4];
        std::snprintf(escape, sizeof escape, "%%%02X", static_cast<unsigned char>(c));
        encoded += isSafe ? std::string(1, c) : escape;
    }
    return encoded;
}

int Hex(std::string const& digits) {
    return static_cast<int>(std::strtol(digits.c_str(), nullptr, 16));
}

// A number below 0x10000 in UTF-8.
std::string Utf8(int unit) {
    auto const byte = [](int value) { return static_cast<char>(value); };
    if (unit < 128) {
        return {byte(unit)};
    }
    if (unit < 2048) {
        return {byte(192 + unit / 64), byte(128 + unit % 64)};
    }
    return {byte(224 + unit / 4096), byte(128 + unit / 64 % 64), byte(128 + unit % 64)};
}

// The first bytes of `text` as they are decoded by the rules; escapes that begin before `bound` are
// read whole.
std::string Decoded(std::string const& text, std::size_t bound) {
    std::string decoded;
    for (std::size_t at = 0; at < std::min(bound, text.size());) {
        if (text[at] != '%') {
            decoded += text[at++];
        } else if (text.compare(at, 2, "%u") == 0) {
            std::string digits = text.substr(at + 2, 4);
            at += 2 + digits.size();
            digits.resize(4, '0');
            for (char& digit : digits) {
                digit = hexDigits.find(digit) != std::string::npos ? digit : '0';
            }
            decoded += Utf8(Hex(digits));
        } else {
            std::size_t const end =
                std::min(text.find_first_not_of(hexDigits, at + 1), text.size());
            std::string const digits = text.substr(at + 1, std::min<std::size_t>(end - at - 1, 2));
            decoded += static_cast<char>(Hex(digits));
            at += 1 + digits.size();
        }
    }
    return decoded.substr(0, decoded.find('\0'));
}

std::string Backslashed(std::string const& text, std::string const& special) {
    std::string escaped;
    for (char const c : text) {
        escaped += (special.find(c) != std::string::npos ? "\\" : "") + std::string(1, c);
    }
    return escaped;
}

// What a script reads.
std::string WithoutBackslashes(std::string const& text) {
    std::string plain;
    for (std::size_t at = 0; at < text.size(); ++at) {
        at += text[at] == '\\' ? 1 : 0;
        plain += text.at(at);
    }
    return plain;
}

void CheckPercent(std::string const& text, unsigned bound) {
    TightText const tight(text);
    std::string const encoded = PcntEncode(tight.c_str());
    ExpectEqual(encoded, Encoded(text), "PcntEncode: all but letters, digits and /._- is escaped");
    ExpectEqual(PcntDecode(encoded.c_str(), nullptr), text, "PcntDecode undoes PcntEncode");
    ExpectEqual(PcntDecode(tight.c_str(), nullptr), Decoded(text, text.size()),
                "PcntDecode: by the rules, up to the NUL");
    ExpectEqual(PcntDecode(tight.c_str(), tight.c_str() + bound), Decoded(text, bound),
                "PcntDecode: by the rules, up to an end");
}

void CheckBackslashes(std::string const& text) {
    TightText const tight(text);
    std::string const slashed = AddSlashes(tight.c_str());
    ExpectEqual(slashed, Backslashed(text, "\\\"'"), "AddSlashes: before quotes and backslashes");
    ExpectEqual(WithoutBackslashes(slashed), text, "AddSlashes: the text can be read again");
    std::string const script = EscapeJavascriptString(text);
    ExpectEqual(script, Backslashed(text, "\\\""),
                "EscapeJavascriptString: before double quotes and backslashes");
    ExpectEqual(WithoutBackslashes(script), text,
                "EscapeJavascriptString: a script reads the text");
}

}  // namespace

void Check(std::string const& input) {
    ResetLibrary();
    Feed feed(input);
    int const number = feed.Number();
    unsigned const bound = feed.Byte();
    std::string const whole = feed.Rest();
    std::string const text = whole.c_str();
    CheckPercent(text, static_cast<unsigned>(std::min<std::size_t>(bound, text.size())));
    CheckBackslashes(text);
    ExpectEqual(PcntEncode(whole), Encoded(text), "PcntEncode: a string ends at its first NUL");
    ExpectEqual(AddSlashes(whole), Backslashed(text, "\\\"'"),
                "AddSlashes: a string ends at its first NUL");
    bool const isPlain = whole.find_first_of("\"\\") == std::string::npos;
    ExpectEqual(EscapeJavascriptString(whole), isPlain ? whole : Backslashed(text, "\\\""),
                "EscapeJavascriptString: a string without backslashes is returned whole");
    ExpectEqual(EscapeJavascriptString(number), std::to_string(number),
                "EscapeJavascriptString: a number is digits and a minus sign");
    ExpectEqual(Reports(), std::vector<std::string>(), "encoders report nothing");
}
