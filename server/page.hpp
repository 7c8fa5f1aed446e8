// What a page is to the programs that show it: one function, and its place in the navigation bar.
//
//     void WriteStatus(QuilloServer::Request& request, std::ostream& out);
//     QuilloServer::Page const status("status", "Status", 1, WriteStatus);
#ifndef QUILLO_SERVER_PAGE_HPP
#define QUILLO_SERVER_PAGE_HPP

#include <zov_appdata.h>

#include <ostream>
#include <quillo>
#include <string>
#include <vector>

namespace QuilloServer {

// One request for a page.
struct Request {
    ZOV_AppData& app;           // the record, for the library's calls
    Quillo::UriArgs arguments;  // the request's arguments, LANGUAGE among them
};

// Writes the whole page to `out`. What it throws is shown to the one who asked for the page.
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

}  // namespace QuilloServer

#endif
