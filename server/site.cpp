#include "site.hpp"

#include <utility>

#include "content_security.hpp"
#include "digests.hpp"
#include "host_names.hpp"
#include "page_runner.hpp"
#include "refusals.hpp"

namespace QuilloServer {
namespace {

bool IsReading(std::string const& method) {
    return method == "GET" || method == "HEAD";
}

Answer Healthy() {
    Answer answer;
    answer.headers.emplace_back("Content-Type", "text/plain; charset=utf-8");
    answer.headers.emplace_back("Cache-Control", "no-store");
    answer.text = "ok\n";
    AddCommonHeaders(answer, SecurityPolicy(""));
    return answer;
}

Answer GoTo(std::string const& path) {
    Answer answer;
    answer.status = 303;
    answer.headers.emplace_back("Location", path);
    answer.headers.emplace_back("Cache-Control", "no-store");
    AddCommonHeaders(answer, SecurityPolicy(""));
    return answer;
}

Answer FirstPage() {
    std::vector<Page const*> const pages = Pages();
    return pages.empty() ? Refusal(404) : GoTo("/" + pages.front()->name);
}

std::string Field(Quillo::UriArgs const& form, std::string const& name) {
    auto const field = form.find(name);
    return field != form.end() ? field->second : "";
}

}  // namespace

Site::Site(SiteSettings settings, PageWatch watch)
    : settings_(std::move(settings)), watch_(std::move(watch)), sessions_(settings_.secret) {}

Answer Site::AnswerTo(Incoming const& incoming) const {
    if (!IsKnownHost(incoming.host, settings_.hostNames)) {
        return Refusal(421);
    }
    if (!IsReading(incoming.method) && incoming.method != "POST") {
        return MethodRefusal("GET, HEAD, POST");
    }
    Page const* const page = FindPage(incoming.path.substr(1));
    if (page != nullptr) {
        return AnswerOfPage(*page, incoming);
    }
    std::optional<Answer> const file = files_.Find(incoming);
    bool const isKnown = file || incoming.path == "/" || incoming.path == "/healthz";
    if (!isKnown) {
        return Refusal(404);
    }
    if (!IsReading(incoming.method)) {
        return MethodRefusal("GET, HEAD");
    }
    if (file) {
        return *file;
    }
    return incoming.path == "/" ? FirstPage() : Healthy();
}

Answer Site::AnswerOfPage(Page const& page, Incoming const& incoming) const {
    int const refusal = IsReading(incoming.method) ? 0 : RefusalOfPost(incoming);
    if (refusal != 0) {
        return Refusal(refusal);
    }
    watch_(&page, incoming.path);
    Answer answer = RunPage(page, incoming, sessions_, settings_.slowMilliseconds);
    watch_(nullptr, "");
    return answer;
}

int Site::RefusalOfPost(Incoming const& incoming) const {
    if (!IsForm(incoming.contentType)) {
        return 415;
    }
    // Without a known session there is a new one, whose token no one has seen.
    bool const isOurs = IsSameOrigin(incoming.origin, incoming.host) &&
                        IsSameSecret(Field(incoming.form, tokenFieldName),
                                     sessions_.Token(sessions_.Find(incoming.cookies)));
    return isOurs ? 0 : 403;
}

}  // namespace QuilloServer
