#include "refusals.hpp"

#include "content_security.hpp"

namespace QuilloServer {
namespace {

struct Words {
    int status;
    char const* title;
    char const* text;
};

Words const words[] = {
    {400, "Not understood", "The request does not follow the rules of HTTP."},
    {403, "Not accepted",
     "The form was not sent from a page of this device, or that page was opened too long ago. Open "
     "the page again and repeat what you did."},
    {404, "No such page", "There is nothing under this address."},
    {405, "Not possible here", "This address cannot be used in that way."},
    {408, "Too slow", "The request did not arrive in time."},
    {411, "Length missing", "The request has to say how long it is."},
    {413, "Too much", "More was sent than this device takes."},
    {414, "Address too long", "The address is longer than this device takes."},
    {415, "Not a form", "This device takes forms only, in the way browsers send them."},
    {421, "Wrong name", "This device is not known under the name it was asked for."},
    {431, "Too many headers", "The header of the request is longer than this device takes."},
    {500, "Something went wrong", "The page could not be made. The log of the device says why."},
    {503, "Not now", "The server is being stopped. Try again in a moment."},
    {505, "Not understood", "This device speaks HTTP/1.1 and HTTP/1.0."}};

// An error of the server for a status that has no words of its own.
Words const& WordsFor(int status) {
    for (Words const& known : words) {
        if (known.status == status) {
            return known;
        }
    }
    return WordsFor(500);
}

// The pages' own style sheet is theirs.
char const style[] =
    "body { max-width: 36rem; margin: 10vh auto; padding: 0 1rem; font: 16px/1.5 system-ui, "
    "sans-serif; }\nh1 { font-size: 1.6rem; line-height: 1.25; }\n";

std::string PageText(Words const& said) {
    std::string const title = said.title;
    return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
           "<meta name=\"color-scheme\" content=\"light dark\">\n<title>" +
           title + "</title>\n<style>\n" + style + "</style>\n</head>\n<body>\n<main>\n<h1>" +
           title + "</h1>\n<p>" + said.text +
           "</p>\n<p><a href=\"/\">First page</a></p>\n</main>\n</body>\n</html>\n";
}

Answer Worded(int status) {
    Answer answer;
    answer.status = status;
    answer.headers.emplace_back("Content-Type", "text/html; charset=utf-8");
    answer.headers.emplace_back("Cache-Control", "no-store");
    answer.text = PageText(WordsFor(status));
    return answer;
}

}  // namespace

Answer Refusal(int status) {
    Answer answer = Worded(status);
    AddCommonHeaders(answer, SecurityPolicy(answer.text));
    return answer;
}

Answer MethodRefusal(std::string const& allowed) {
    Answer answer = Worded(405);
    answer.headers.emplace_back("Allow", allowed);
    AddCommonHeaders(answer, SecurityPolicy(answer.text));
    return answer;
}

}  // namespace QuilloServer
