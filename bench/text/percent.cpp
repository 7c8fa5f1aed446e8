// Text that is to stand in a URI, and back.
#include <curl/curl.h>
#include <glib.h>
#include <libxml/uri.h>
#include <uriparser/Uri.h>

#include <memory>
#include <quillo>

#include "text/contender.hpp"

namespace Bench {
namespace {

void EncodeByQuillo(std::string const& text, std::string* copy) {
    Take(Quillo::PcntEncode(text).c_str(), copy);
}

void EncodeByGlib(std::string const& text, std::string* copy) {
    gchar* const result = g_uri_escape_string(text.c_str(), nullptr, FALSE);
    Take(result, copy);
    g_free(result);
}

void EncodeByLibxml2(std::string const& text, std::string* copy) {
    xmlChar const none = 0;
    xmlChar* const result = xmlURIEscapeStr(reinterpret_cast<xmlChar const*>(text.c_str()), &none);
    Take(reinterpret_cast<char const*>(result), copy);
    xmlFree(result);
}

void EncodeByCurl(std::string const& text, std::string* copy) {
    char* const result = curl_easy_escape(nullptr, text.data(), static_cast<int>(text.size()));
    Take(result, copy);
    curl_free(result);
}

void EncodeByUriparser(std::string const& text, std::string* copy) {
    std::unique_ptr<char[]> const result(new char[3 * text.size() + 1]);
    uriEscapeExA(text.data(), text.data() + text.size(), result.get(), URI_FALSE, URI_FALSE);
    Take(result.get(), copy);
}

void DecodeByQuillo(std::string const& text, std::string* copy) {
    Take(Quillo::PcntDecode(text.c_str(), nullptr).c_str(), copy);
}

void DecodeByGlib(std::string const& text, std::string* copy) {
    gchar* const result = g_uri_unescape_string(text.c_str(), nullptr);
    Take(result, copy);
    g_free(result);
}

void DecodeByLibxml2(std::string const& text, std::string* copy) {
    char* const result = xmlURIUnescapeString(text.data(), static_cast<int>(text.size()), nullptr);
    Take(result, copy);
    xmlFree(result);
}

void DecodeByCurl(std::string const& text, std::string* copy) {
    int size = 0;
    char* const result =
        curl_easy_unescape(nullptr, text.data(), static_cast<int>(text.size()), &size);
    Take(result, copy);
    curl_free(result);
}

// It decodes in place, so a text that is kept is copied first.
void DecodeByUriparser(std::string const& text, std::string* copy) {
    std::string result = text;
    uriUnescapeInPlaceA(result.data());
    Take(result.c_str(), copy);
}

}  // namespace

std::vector<TextContender> const& Encoders() {
    static std::vector<TextContender> const encoders = {{"quillo", EncodeByQuillo},
                                                        {"glib", EncodeByGlib},
                                                        {"libxml2", EncodeByLibxml2},
                                                        {"curl", EncodeByCurl},
                                                        {"uriparser", EncodeByUriparser}};
    return encoders;
}

std::vector<TextContender> const& Decoders() {
    static std::vector<TextContender> const decoders = {{"quillo", DecodeByQuillo},
                                                        {"glib", DecodeByGlib},
                                                        {"libxml2", DecodeByLibxml2},
                                                        {"curl", DecodeByCurl},
                                                        {"uriparser", DecodeByUriparser}};
    return decoders;
}

}  // namespace Bench
