// The small texts of a request that the page server reads: target, query, host, origin, tags, the
// type of a form; and the policy of a page with any text in it.
#include <content_security.hpp>
#include <host_names.hpp>
#include <incoming.hpp>
#include <listener.hpp>
#include <query.hpp>
#include <static_files.hpp>

#include <algorithm>
#include <optional>
#include <stdexcept>

#include "digests.hpp"
#include "feed.hpp"
#include "oracle.hpp"
#include "pieces.hpp"

using namespace QuilloServer;

namespace {

typedef std::vector<std::string> Texts;

std::string Lowered(std::string text) {
    for (char& c : text) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    }
    return text;
}

bool EndsWith(std::string const& text, std::string const& end) {
    return text.size() >= end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

void CheckTarget(std::string const& target) {
    Incoming incoming;
    incoming.host = "before";
    TakeTarget(incoming, target);
    bool const isAbsolute = Lowered(target.substr(0, 7)) == "http://";
    std::string const rest = isAbsolute ? target.substr(7) : target;
    if (!isAbsolute) {
        ExpectEqual(incoming.host, std::string("before"), "TakeTarget: the header's host stays");
    } else {
        ExpectEqual(incoming.host, Pieces(rest, "/?")[0], "TakeTarget: the target's host");
    }
    std::string const local = isAbsolute ? rest.substr(incoming.host.size()) : rest;
    std::string const path = Pieces(local, "?")[0];
    bool const hasQuery = path.size() < local.size();
    bool const isEmpty = path.empty() && (hasQuery || isAbsolute);
    // A target of nothing is none of those that the head may have.
    if (!target.empty()) {
        ExpectEqual(incoming.path, isEmpty ? "/" : path, "TakeTarget: the path as it was sent");
    }
    ExpectEqual(incoming.query, hasQuery ? local.substr(path.size() + 1) : "",
                "TakeTarget: the query behind the '?'");
}

void CheckQuery(std::string const& query, std::string const& name) {
    std::string expected;
    for (std::string const& field : Pieces(query.c_str(), "&")) {
        std::size_t const equals = name.size();
        if (field.size() > equals && field.substr(0, equals) == name && field[equals] == '=') {
            expected = Quillo::PcntDecode(field.c_str() + equals + 1, nullptr);
        }
    }
    if (name.find('\0') == std::string::npos) {
        ExpectEqual(QueryArgument(query, name), expected, "QueryArgument: the last of its name");
    }
}

void CheckForm(std::string const& type) {
    std::string plain = Pieces(type, ";")[0];
    while (!plain.empty() && (plain.back() == ' ' || plain.back() == '\t')) {
        plain.pop_back();
    }
    ExpectEqual(IsForm(type), Lowered(plain.c_str()) == "application/x-www-form-urlencoded",
                "IsForm: the one type, in any case, with any parameter");
}

void CheckTags(std::string const& known, std::string const& tag) {
    bool isNamed = false;
    for (std::string const& one : Pieces(known.c_str(), ", \t")) {
        isNamed = isNamed || one == "*" || (one == tag && !one.empty()) || one == "W/" + tag;
    }
    ExpectEqual(IsTagNamed(known, tag), isNamed, "IsTagNamed: one of the list, weak or not");
}

// "NAME", "NAME:PORT", "[ADDRESS]" or "[ADDRESS]:PORT"; nothing else has a name.
std::string NameOf(std::string const& authority) {
    std::size_t end = 0;
    if (authority[0] == '[' && authority.find(']') != std::string::npos) {
        end = authority.find(']') + 1;
    } else {
        end = Pieces(authority, ":")[0].size();
    }
    std::string const port = authority.substr(end);
    bool const isPort =
        port.empty() ||
        (port[0] == ':' && port.substr(1).find_first_not_of("0123456789") == std::string::npos);
    std::string name = Lowered(authority.substr(0, end));
    if (EndsWith(name, ".")) {
        name.pop_back();
    }
    return isPort && !EndsWith(name, ".") ? name : "";
}

void CheckHost(std::string const& host, std::string const& other) {
    std::string const name = HostName(host);
    ExpectEqual(name, NameOf(host), "HostName: lower case, no port, no dot at the end");
    Expect(name.empty() || name[0] == '[' || name.find(':') == std::string::npos,
           "HostName: no port is left", name);
    bool const isLoopback = name == "localhost" || name == "127.0.0.1" || name == "[::1]";
    ExpectEqual(IsKnownHost(host, {}), isLoopback, "IsKnownHost: loopback names alone");
    ExpectEqual(IsKnownHost(host, {"x", name}), true, "IsKnownHost: a name of the list");
    ExpectEqual(IsKnownHost(host, {name + "x"}), isLoopback, "IsKnownHost: the whole name");
    std::string const given = GivenHostName(host);
    Expect(given.empty() || given == HostName(given), "GivenHostName: the form of HostName", given);
    ExpectEqual(IsSameOrigin("http://" + host, host), true, "IsSameOrigin: of its own host");
    ExpectEqual(IsSameOrigin("HTTPS://" + host, host), true, "IsSameOrigin: in any case");
    ExpectEqual(
        IsSameOrigin(other, host),
        Lowered(other) == "http://" + Lowered(host) || Lowered(other) == "https://" + Lowered(host),
        "IsSameOrigin: of no other host");
}

// Digits, and no more than 65535 with any zeros ahead.
bool IsPort(std::string const& text) {
    std::size_t const zeros = std::min(text.find_first_not_of('0'), text.size());
    std::string const number = text.substr(zeros);
    return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos &&
           (number.size() < 5 || (number.size() == 5 && number <= "65535"));
}

// Address and port, read from the front: the brackets of an address that holds a ':' end at the
// first ']', and any other address at the first ':'.
std::optional<Texts> ReadEndpoint(std::string const& text) {
    bool const isBracketed = text[0] == '[';
    std::size_t const begin = isBracketed ? 1 : 0;
    std::size_t const end = text.find(isBracketed ? ']' : ':');
    if (end == std::string::npos) {
        return std::nullopt;
    }
    std::string const address = text.substr(begin, end - begin);
    std::string const rest = text.substr(end + begin);
    bool const isWhole = !address.empty() && address.find_first_of("[]") == std::string::npos &&
                         (!isBracketed || address.find(':') != std::string::npos);
    bool const isTaken = isWhole && rest[0] == ':' && IsPort(rest.substr(1));
    return isTaken ? std::optional<Texts>({address, rest.substr(1)}) : std::nullopt;
}

void CheckEndpoint(std::string const& text) {
    std::optional<Texts> parsed;
    try {
        Endpoint const endpoint = ParseEndpoint(text);
        parsed = {endpoint.address, endpoint.port};
    } catch (std::invalid_argument const& error) {
        std::string const refused = "'" + text + "'";
        Expect(std::string(error.what()).rfind(refused.c_str(), 0) == 0,
               "ParseEndpoint: a refusal shows what it refuses", error.what());
    }
    ExpectEqual(parsed, ReadEndpoint(text),
                "ParseEndpoint: ADDRESS:PORT and [IPV6-ADDRESS]:PORT, and nothing else");
}

// The digests in a policy are those of the scripts that the library writes.
void CheckPolicy(std::string const& text) {
    std::string const start = "<script type=\"text/javascript\">";
    std::string const page = start + text + "</script>";
    std::string const policy = SecurityPolicy(page);
    std::string const script = text.substr(0, text.find("</script>"));
    bool isFocus = script.compare(0, 9, "document.") == 0 && EndsWith(script, ".focus();") &&
                   script.size() > 18;
    Texts const names = isFocus ? Pieces(script.substr(9, script.size() - 18), ".") : Texts();
    isFocus = names.size() == 2;
    for (std::string const& name : names) {
        isFocus = isFocus && !name.empty() &&
                  name.find_first_not_of(
                      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                      "0123456789_$") == std::string::npos;
    }
    std::string const source = "'sha256-" + Sha256Base64(script) + "'";
    bool const isAllowed = policy.find(source) != std::string::npos;
    if (text.find("<script") == std::string::npos && text.find("<style") == std::string::npos) {
        ExpectEqual(isAllowed, isFocus, "SecurityPolicy: the library's own script alone");
        ExpectEqual(policy.find("'unsafe-inline'"), policy.rfind("'unsafe-inline'"),
                    "SecurityPolicy: inline for style attributes alone");
    }
    Expect(policy.find_first_of("\r\n") == std::string::npos &&
               policy.compare(0, 20, "default-src 'none'; ") == 0,
           "SecurityPolicy: is one line, and begins with nothing", policy);
}

}  // namespace

void Check(std::string const& input) {
    Feed feed(input);
    unsigned const kind = feed.Below(4);
    std::string const port = std::to_string(feed.Below(256) * 258);
    std::string const first = feed.Text();
    std::string const rest = feed.Rest();
    CheckTarget(first);
    CheckTarget("http://" + first);
    CheckQuery(rest, first);
    CheckQuery(first + "=" + rest, first);
    CheckForm(first);
    CheckTags(rest, first);
    CheckHost(first, rest);
    CheckHost(rest, "http://" + first);
    CheckEndpoint(first);
    for (std::string const& address : {std::string("host"), std::string("[::1]"),
                                       std::string("[fd00::").append(first).append("]")}) {
        CheckEndpoint(std::string(address).append(":").append(first));
        CheckEndpoint(std::string(address).append(":").append(port));
    }
    CheckPolicy(kind == 1 ? "document." + first + ".focus();" : rest);
}
