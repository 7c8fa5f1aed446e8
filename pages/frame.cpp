#include "frame.hpp"

#include <quillo_kit/accessibility.hpp>
#include <quillo_kit/elements.hpp>
#include <quillo_kit/safe.hpp>

#include "static_files.hpp"
#include "theme.hpp"

using namespace Quillo;
using namespace QuilloKit;

namespace Pages {
namespace {

bool IsRightToLeft() {
    return g_language != nullptr && std::string(g_language) == "ar";
}

Element MakeHead(bool standsAlone, std::string const& title) {
    Head head;
    head << Meta().SetAttr("charset", "utf-8");
    head << Meta()
                .SetAttr("name", "viewport")
                .SetAttr("content", "width=device-width, initial-scale=1");
    head << Title(title);
    if (standsAlone) {
        head << Style(styleSheet);
    } else {
        head << Link().SetAttr("rel", "stylesheet").SetAttr("href", styleSheetPath);
    }
    return head;
}

Element MakeNavigation(QuilloServer::Request& request, std::string const& shownPage) {
    std::vector<Slot> slots;
    for (QuilloServer::Page const* page : QuilloServer::Pages()) {
        slots.push_back({Translated(request, page->title), SafeUrl("/" + page->name),
                         page->name == shownPage, false});
    }
    return MakeNavBar(slots);
}

Element MakeBody(QuilloServer::Request& request, QuilloServer::Page const& page,
                 Element const& content) {
    Body body;
    body << (A().SetAttr("class", "skip").SetAttr("href", "#content")
             << Phrase(request, "Skip to the content"));
    body << (Header().SetAttr("class", "site")
             << H1("Quillo") << MakeNavigation(request, page.name));
    body << (Main().SetAttr("id", "content").SetAttr("tabindex", "-1")
             << SmallTitle(Translated(request, page.title)) << content);
    if (IsDebug()) {
        body << (Aside().SetAttr("class", "debug") << debugMsgs);
    }
    return body;
}

}  // namespace

std::string Translated(QuilloServer::Request& request, std::string const& phrase) {
    return TranslatePhrase(request.app, phrase, LoaContext_None);
}

Text Phrase(QuilloServer::Request& request, std::string const& phrase) {
    return Text(Translated(request, phrase), true);
}

void WriteFramed(QuilloServer::Request& request, std::ostream& out, std::string const& page,
                 Element const& content) {
    QuilloServer::Page const& shown = *QuilloServer::FindPage(page);
    Html html;
    html.SetAttr("lang", SafeAttr(Cstr(g_language)));
    html.SetAttr("dir", IsRightToLeft() ? "rtl" : "ltr");
    std::string const theme = ChosenTheme(request);
    if (!theme.empty()) {
        html.SetAttr("data-theme", SafeAttr(theme));
    }
    html << MakeHead(request.standsAlone, Translated(request, shown.title));
    html << MakeBody(request, shown, content);
    MakeAccessible(html, Translated(request, "Pages"));
    Renderer r(out);
    (Group() << Doctype() << html).impl->Render(r, 0);
}

}  // namespace Pages
