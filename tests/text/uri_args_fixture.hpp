// What tests of the request's arguments share: a request of a client that asks for "xx".
#ifndef QUILLO_TESTS_TEXT_URI_ARGS_FIXTURE_HPP
#define QUILLO_TESTS_TEXT_URI_ARGS_FIXTURE_HPP

#include <cstdint>
#include <cstring>
#include <string>

#include "support/page_test.hpp"

class UriArgsFixture : public PageTest {
protected:
    UriArgsFixture() : request() {
        std::strcpy(request.preferredLang, "xx");
        Platform().languageAnswer = "en-us";
    }

    Quillo::UriArgs Args(char const* text, Quillo::UriArgs const& defaults = Quillo::UriArgs()) {
        request.uriArgs = text;
        return Quillo::GetUriArgs(request, defaults);
    }

    // Forgets what was recorded and reported; the service answers as before.
    void Reset() {
        RecordingPlatform fresh;
        fresh.languageAnswer = "en-us";
        Platform() = fresh;
        Quillo::debugMsgs = Quillo::Div();
    }

    // Everything that was done, a line for each, with LINE in the place of line numbers.
    static std::vector<std::string> Done() {
        std::vector<std::string> done;
        for (std::string line : Platform().trace) {
            std::string const place = "At src/text/uri_args.cpp:";
            std::size_t const start = line.find(place);
            if (start != std::string::npos) {
                std::size_t const digits = start + place.size();
                line.replace(digits, line.find(':', digits) - digits, "LINE");
            }
            done.push_back(line);
        }
        return done;
    }

    // The line of `debugMsgs` for each entry that has one, made from the device log.
    static std::vector<std::string> LinesOfLog() {
        std::vector<std::string> lines;
        for (LogEntry const& entry : Platform().log) {
            std::string const place = "At " + entry.file + ":" + std::to_string(entry.line) + ": ";
            if (entry.format == "%s") {
                EXPECT_EQ(entry.message.substr(0, place.size()), place);
                lines.push_back(entry.message);
            } else if (entry.level != "force") {
                std::string const word = entry.level == "warn" ? "LOGWARN: " : "LOGINFO: ";
                lines.push_back(place + word + entry.message);
            }
        }
        return lines;
    }

    ZOV_AppData request;
};

#endif
