// What a page is to the programs that show it: one function, and its place in the navigation bar.
// This is the one header of the server that a page needs.
//
//     void WriteStatus(QuilloServer::Request& request, std::ostream& out);
//     QuilloServer::Page const status("status", "Status", 1, WriteStatus);
#ifndef QUILLO_SERVER_PAGE_HPP
#define QUILLO_SERVER_PAGE_HPP

#include <zov_appdata.h>

#include <ostream>
#include <quillo>
#include <string>
#include <string_view>
#include <vector>

namespace QuilloServer {

// One request for a page, and what the page settles of the answer beside its text.
struct Request {
    ZOV_AppData& app;           // the record, for the library's calls
    Quillo::UriArgs arguments;  // the request's arguments, LANGUAGE among them

    std::string method = "GET";  // GET, HEAD or POST; the page writes the same for HEAD as for GET
    Quillo::UriArgs form = {};   // a POST's fields, decoded; of a repeated one the last
    Quillo::UriArgs cookies = {};
    std::string token = {};  // what every form that is sent by POST carries: see TokenField

    bool standsAlone = false;  // kept as a file, out of the reach of others: holds its style sheet

    int status = 200;           // of the answer
    std::string redirect = {};  // a path to go to, as after a POST: the page's text is not sent
    Quillo::UriArgs newCookies = {};  // kept for a year; an empty value ends a cookie
};

// Writes the whole page to `out`, which is memory. When it throws, nothing of the page is sent.
typedef void (*WritePage)(Request& request, std::ostream& out);

// A page that the programs know. Made once for each page, as a constant of the page's source file.
class Page {
public:
    // `title` is a phrase for the translation service. Pages stand in the navigation bar by
    // `order`.
    Page(std::string const& name, std::string const& title, int order, WritePage write);
    Page(Page const&) = delete;
    Page& operator=(Page const&) = delete;
    ~Page();

    std::string const name;  // its path is "/" and the name
    std::string const title;
    int const order;
    WritePage const write;
};

// Every page there is, by their order.
std::vector<Page const*> Pages();

// The page of that name; null when there is none.
Page const* FindPage(std::string const& name);

// A file that is served as it stands, such as a style sheet or an image. Made like a page; what
// `bytes` refers to outlives it.
//
//     QuilloServer::StaticFile const sheet("/style.css", "text/css; charset=utf-8", styleSheet);
class StaticFile {
public:
    StaticFile(std::string const& path, std::string const& type, std::string_view bytes);
    StaticFile(StaticFile const&) = delete;
    StaticFile& operator=(StaticFile const&) = delete;
    ~StaticFile();

    std::string const path;
    std::string const type;  // the MIME type
    std::string_view const bytes;
};

// Every static file there is.
std::vector<StaticFile const*> const& StaticFiles();

// A setting of the configuration store that pages use. Made like a page; the programs declare every
// one to the platform before the first request.
class Setting {
public:
    Setting(std::string const& name, std::string const& defaultValue);
    Setting(Setting const&) = delete;
    Setting& operator=(Setting const&) = delete;
    ~Setting();

    std::string const name;
    std::string const defaultValue;
};

// Every setting there is.
std::vector<Setting const*> const& Settings();

// The hidden field that lets a form through which the server itself has shown to this reader: a
// POST without it is refused before the page sees it.
Quillo::Element TokenField(Request const& request);

// That field's name.
extern char const tokenFieldName[];

}  // namespace QuilloServer

#endif
