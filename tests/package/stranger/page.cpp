// A page program as others write one, against the installed library: it uses every service of the
// platform. What it writes is page.html, on any platform that knows this machine's name.
#include <glb.h>
#include <unistd.h>

#include <iostream>
#include <quillo>
#include <quillo_kit/elements.hpp>

namespace {

using namespace Quillo;

// Whether the attribute service knows this machine by its own name.
bool IsHostKnown(ZOV_AppData& app) {
    char name[256] = "";
    gethostname(name, sizeof name - 1);
    std::vector<std::vector<std::string>> rows;
    return GetObject(app, ObjectType_Sys, "host", {"hostname"}, rows) == 0 && rows.size() == 1 &&
           rows[0] == std::vector<std::string>{name};
}

// What the platform throws, as this program catches it.
std::string Refusal() {
    try {
        Br() << Text("a leaf has no children", true);
    } catch (Glb::Error const& error) {
        return error.message();
    }
    return "";
}

void AddLine(Element const& page, std::string const& text) {
    page << (QuilloKit::Tag("p").SetOneLine() << Text(text, true));
}

Element MakePage(ZOV_AppData& app) {
    UriArgs const args = GetUriArgs(app, UriArgs());
    bool value = true;
    IconSize size = IconSize_Small;
    Div page;
    page.SetAttr("lang", args.at("LANGUAGE"));
    page << SmallTitle(TranslatePhrase(app, "Storage", LoaContext_None));
    AddLine(page, args.at("text"));
    AddLine(page, IsHostKnown(app) ? "this machine" : "another machine");
    AddLine(page, Refusal());
    AddLine(page, GetConfig("no.such.setting", value) == 0 ? "a setting" : "no setting");
    AddLine(page, FromCstr("Huge", size) ? "no size" : ToCstr(size));
    return page;
}

}  // namespace

int main() {
    ZOV_AppData app = {};
    std::string("de-de").copy(app.preferredLang, sizeof app.preferredLang - 1);
    app.uriArgs = "text=%3Cup+%26+running%3E";
    app.out = stdout;
    Renderer out(std::cout);
    MakePage(app).impl->Render(out, 0);
    return 0;
}
