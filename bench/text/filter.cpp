// Text that is to stand in HTML.
#include <ctemplate/template_modifiers.h>
#include <glib.h>
#include <libxml/entities.h>

#include <quillo>

#include "text/contender.hpp"

namespace Bench {
namespace {

void FilterByQuillo(std::string const& text, std::string* copy) {
    Take(Quillo::Filter(text).c_str(), copy);
}

void FilterByLibxml2(std::string const& text, std::string* copy) {
    xmlChar* const result =
        xmlEncodeSpecialChars(nullptr, reinterpret_cast<xmlChar const*>(text.c_str()));
    Take(reinterpret_cast<char const*>(result), copy);
    xmlFree(result);
}

void FilterByGlib(std::string const& text, std::string* copy) {
    gchar* const result = g_markup_escape_text(text.data(), static_cast<gssize>(text.size()));
    Take(result, copy);
    g_free(result);
}

void FilterByCtemplate(std::string const& text, std::string* copy) {
    Take(ctemplate::html_escape(text).c_str(), copy);
}

}  // namespace

std::vector<TextContender> const& Filters() {
    static std::vector<TextContender> const filters = {{"quillo", FilterByQuillo},
                                                       {"libxml2", FilterByLibxml2},
                                                       {"glib", FilterByGlib},
                                                       {"ctemplate", FilterByCtemplate}};
    return filters;
}

}  // namespace Bench
