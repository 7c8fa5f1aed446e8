#include "sample_page_test.hpp"

#include <cstdio>
#include <sstream>

#include "catalog_phrases.hpp"

using namespace Quillo;
using QuilloServer::Request;

SamplePageTest::SamplePageTest() : app() {
    app.out = std::tmpfile();
    Speak("en-us");
    Platform().settings = {{"show_memory", 1}, {"show_interfaces", 1}, {"show_storage", 1}};
    Platform().objects["host"] = {
        {"hostname", "kernel", "architecture", "uptime", "load1", "load5", "load15", "processes"},
        {{"<gate>", "6.1", "ppc", "93784", "0.10", "0.20", "0.30", "42"}}};
    Platform().objects["memory"] = {{"total", "available", "swap_total", "swap_free"},
                                    {{"1536", "1024", "0", "0"}}};
    Platform().objects["interfaces"] = {
        {"name", "state", "mac", "ipv4", "ipv6", "rx_bytes", "tx_bytes", "mtu"},
        {{"lo", "unknown", "", "127.0.0.1/8", "::1/128", "10", "10", "65536"},
         {"eth0", "up", "02:00:00:00:00:01", "192.0.2.7/24", "", "2048", "4096", "1500"}}};
    Platform().objects["storage"] = {
        {"mount", "device", "type", "size", "used", "available"},
        {{"/var", "/dev/vdb", "ext4", "1073741824", "1000000000", "73741824"},
         {"/", "/dev/vda", "ext4", "1073741824", "536870912", "268435456"},
         {"/mnt/away", "host:/a&b", "nfs", "Unavailable", "Unavailable", "Unavailable"}}};
    Platform().objects["log info end "] = {
        {"offset", "time", "process", "level", "source", "text"},
        {{"300", "2026-01-02T03:04:05.678+01:00", "4711", "error", "src/a.cpp:7",
          "the newest: <b>"},
         {"250", "", "", "other", "", "free text"},
         {"200", "2026-01-02T03:04:04+01:00", "4712", "warning", "b.cpp:1", "the oldest"},
         {"150", "", "", "", "", ""}}};
    Platform().objects["processes"] = {{"pid", "name", "state", "rss_bytes", "threads"},
                                       {{"7", "a&b", "S", "4096", "3"},
                                        {"1", "init", "R", "1024", "1"},
                                        {"9", "new", "?", "0", "1"}}};
}

SamplePageTest::~SamplePageTest() {
    std::fclose(app.out);
}

void SamplePageTest::Speak(std::string const& catalog) {
    Platform().languageAnswer = catalog;
    auto const phrases = CatalogPhrases(catalog);
    Platform().onTranslate = [catalog, phrases](std::string const& phrase) {
        auto const found = phrases.find(phrase);
        if (found == phrases.end()) {
            ADD_FAILURE() << catalog << " has no phrase \"" << phrase << "\"";
            return phrase;
        }
        return found->second;
    };
}

Request SamplePageTest::Asked(char const* arguments) {
    app.uriArgs = arguments;
    return {app, GetUriArgs(app, UriArgs())};
}

std::string SamplePageTest::Written(std::string const& name, Request& request) {
    std::ostringstream out;
    QuilloServer::FindPage(name)->write(request, out);
    return out.str();
}

std::string SamplePageTest::Written(std::string const& name, char const* arguments) {
    Request request = Asked(arguments);
    return Written(name, request);
}

std::string Replaced(std::string text, std::string const& sought, std::string const& written) {
    for (std::size_t at = text.find(sought); at != std::string::npos;
         at = text.find(sought, at + written.size())) {
        text.replace(at, sought.size(), written);
    }
    return text;
}
