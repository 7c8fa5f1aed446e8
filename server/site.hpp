// What a request is answered with.
//
//     /            the first page
//     /NAME        the page of that name
//     /healthz     "ok", for a program that watches the server
//     other paths  static files
#ifndef QUILLO_SERVER_SITE_HPP
#define QUILLO_SERVER_SITE_HPP

#include <functional>
#include <string>
#include <vector>

#include "answer.hpp"
#include "incoming.hpp"
#include "page.hpp"
#include "session.hpp"
#include "static_files.hpp"

namespace QuilloServer {

struct SiteSettings {
    std::vector<std::string> hostNames;  // as HostName gives them, beside the loopback ones
    std::string secret;
    int slowMilliseconds;
};

// Told before a page begins, with the request's path, and with null when the page is over.
typedef std::function<void(Page const* page, std::string const& path)> PageWatch;

class Site {
public:
    Site(SiteSettings settings, PageWatch watch);

    // Whatever is wrong with the request is answered with a refusal.
    Answer AnswerTo(Incoming const& incoming) const;

private:
    Answer AnswerOfPage(Page const& page, Incoming const& incoming) const;
    int RefusalOfPost(Incoming const& incoming) const;

    SiteSettings settings_;
    PageWatch watch_;
    Sessions sessions_;
    FileTable files_;
};

}  // namespace QuilloServer

#endif
