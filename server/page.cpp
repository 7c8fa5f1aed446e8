#include "page.hpp"

#include <algorithm>

namespace QuilloServer {
namespace {

// A function's static: pages in other files are made before any variable of this one.
template <class Known>
std::vector<Known const*>& Registry() {
    static std::vector<Known const*> all;
    return all;
}

template <class Known>
void Forget(Known const* one) {
    std::vector<Known const*>& all = Registry<Known>();
    all.erase(std::remove(all.begin(), all.end(), one), all.end());
}

}  // namespace

char const tokenFieldName[] = "token";

Page::Page(std::string const& pageName, std::string const& pageTitle, int pageOrder,
           WritePage writePage)
    : name(pageName), title(pageTitle), order(pageOrder), write(writePage) {
    Registry<Page>().push_back(this);
}

Page::~Page() {
    Forget(this);
}

std::vector<Page const*> Pages() {
    std::vector<Page const*> pages = Registry<Page>();
    std::sort(pages.begin(), pages.end(),
              [](Page const* left, Page const* right) { return left->order < right->order; });
    return pages;
}

Page const* FindPage(std::string const& name) {
    for (Page const* page : Registry<Page>()) {
        if (page->name == name) {
            return page;
        }
    }
    return nullptr;
}

StaticFile::StaticFile(std::string const& filePath, std::string const& mimeType,
                       std::string_view fileBytes)
    : path(filePath), type(mimeType), bytes(fileBytes) {
    Registry<StaticFile>().push_back(this);
}

StaticFile::~StaticFile() {
    Forget(this);
}

std::vector<StaticFile const*> const& StaticFiles() {
    return Registry<StaticFile>();
}

Setting::Setting(std::string const& settingName, std::string const& value)
    : name(settingName), defaultValue(value) {
    Registry<Setting>().push_back(this);
}

Setting::~Setting() {
    Forget(this);
}

std::vector<Setting const*> const& Settings() {
    return Registry<Setting>();
}

Quillo::Element TokenField(Request const& request) {
    Quillo::Element field(
        boost::shared_ptr<Quillo::ElementImpl>(new Quillo::ElementImpl("input", true)));
    field.SetAttr("type", "hidden");
    field.SetAttr("name", tokenFieldName);
    field.SetAttr("value", Quillo::Filter(request.token));
    return field;
}

}  // namespace QuilloServer
