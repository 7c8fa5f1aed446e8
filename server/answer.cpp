#include "answer.hpp"

#include <ctime>

namespace QuilloServer {
namespace {

struct Reason {
    int status;
    char const* phrase;
};

Reason const reasons[] = {{200, "OK"},
                          {303, "See Other"},
                          {304, "Not Modified"},
                          {400, "Bad Request"},
                          {403, "Forbidden"},
                          {404, "Not Found"},
                          {405, "Method Not Allowed"},
                          {408, "Request Timeout"},
                          {411, "Length Required"},
                          {413, "Content Too Large"},
                          {414, "URI Too Long"},
                          {415, "Unsupported Media Type"},
                          {421, "Misdirected Request"},
                          {431, "Request Header Fields Too Large"},
                          {500, "Internal Server Error"},
                          {503, "Service Unavailable"},
                          {505, "HTTP Version Not Supported"}};

// In the form of RFC 9110, 5.6.7: its names are English, whatever the locale.
std::string Date() {
    static char const* const days[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    static char const* const months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                         "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    std::time_t const now = std::time(nullptr);
    std::tm utc = {};
    gmtime_r(&now, &utc);
    char rest[32] = "";
    std::strftime(rest, sizeof rest, " %Y %H:%M:%S GMT", &utc);
    std::string const day = (utc.tm_mday < 10 ? "0" : "") + std::to_string(utc.tm_mday);
    return std::string(days[utc.tm_wday]) + ", " + day + " " + months[utc.tm_mon] + rest;
}

}  // namespace

void AddCommonHeaders(Answer& answer, std::string const& policy) {
    answer.headers.emplace_back("Content-Security-Policy", policy);
    answer.headers.emplace_back("X-Content-Type-Options", "nosniff");
    // Not "no-referrer": with that, a browser says "Origin: null" when it sends a form.
    answer.headers.emplace_back("Referrer-Policy", "same-origin");
    // Pages of other servers cannot even find out that an image or a script is here.
    answer.headers.emplace_back("Cross-Origin-Resource-Policy", "same-origin");
    answer.headers.emplace_back("Connection", "close");
}

std::string ReasonPhrase(int status) {
    for (Reason const& reason : reasons) {
        if (reason.status == status) {
            return reason.phrase;
        }
    }
    return "";
}

std::string Serialized(Answer const& answer) {
    std::string text = "HTTP/1.1 " + std::to_string(answer.status) + " " +
                       ReasonPhrase(answer.status) + "\r\nDate: " + Date() + "\r\n";
    for (auto const& [name, value] : answer.headers) {
        text.append(name).append(": ").append(value).append("\r\n");
    }
    text += "Content-Length: " + std::to_string(answer.Body().size()) + "\r\n\r\n";
    return text.append(answer.Body());
}

}  // namespace QuilloServer
