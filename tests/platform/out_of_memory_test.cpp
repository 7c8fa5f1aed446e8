// Memory runs out at each allocation in turn.
#include <gtest/gtest.h>
#include <ifaddrs.h>
#include <netinet/in.h>

#include <algorithm>
#include <regex>
#include <string>
#include <utility>

#include "host/config_store.hpp"
#include "host/contract.hpp"
#include "host/host.hpp"
#include "host/request_state.hpp"
#include "platform/capture_pipe.hpp"
#include "platform/captured_stderr.hpp"
#include "platform/fixture_machine.hpp"
#include "platform/store_fixture.hpp"
#include "platform/system_calls.hpp"
#include "support/failing_memory.hpp"

// Where there is no memory for a locale, Boost.Locale loses the facet that it has made for it.
extern "C" char const* __lsan_default_suppressions() {
    return "leak:boost::locale::\n";
}

namespace {

char const longName[] = "a name that is too long to be kept without memory from the heap";

// Fails the first allocation of `work`, the second and so on, up to a run in which all succeed;
// hands `check` whether one failed. Returns how many did.
template <class Work, class Check>
int FailEach(Work work, Check check, FailingMemory::Failure kind) {
    for (int allowed = 0;; ++allowed) {
        FailingMemory::Allow(allowed, kind);
        work();
        FailingMemory::AllowAll();
        bool const hasFailed = FailingMemory::hasFailed;
        check(hasFailed);
        if (!hasFailed) {
            return allowed;
        }
    }
}

// The same with all allocations behind that one failing, too, and then with that one alone. Returns
// how many failed in the first way.
template <class Work, class Check>
int FailEach(Work work, Check check) {
    int const failures = FailEach(work, check, FailingMemory::AllFromThenOn);
    FailEach(work, check, FailingMemory::Once);
    return failures;
}

TEST(OutOfMemory, TheLogStillWritesTheEntry) {
    int const failures = FailEach(
        [] { Log_SpecEntry(logSpecInfo, "fi\nle", 1, "mess\nage %s", longName); }, [](bool) {});
    EXPECT_GT(failures, 1);
    FailEach(
        [] {
            CapturedStderr const captured;
            Log_SpecEntry(logSpecWarn, "fi\nle", 1, "mess\nage %s", longName);
            FailingMemory::Pause const pause;
            std::string const text = captured.Text();
            std::string const end =
                "] warning fi\\nle:1: mess\\nage " + std::string(longName) + "\n";
            ASSERT_GT(text.size(), end.size());
            EXPECT_EQ(text.substr(text.size() - end.size()), end);
            EXPECT_EQ(text.find('\n'), text.size() - 1);
        },
        [](bool) {});
}

TEST(OutOfMemory, TheLogCutsAnEntryThatIsTooLongForItsSpareBuffer) {
    std::string const message(100000, '\n');
    std::string const file(5000, 'f');
    CapturedStderr const captured;
    FailingMemory::Allow(0);
    Log_SpecEntry(logSpecError, file.c_str(), 7, "%s", message.c_str());
    FailingMemory::AllowAll();
    std::string const text = captured.Text();
    EXPECT_NE(text.find(" error fff"), std::string::npos);
    EXPECT_NE(text.find("fff:7: \\n\\n"), std::string::npos);
    EXPECT_EQ(text.find('\n'), text.size() - 1);
}

TEST(OutOfMemory, TheLogTellsTheTimeAsEverThoughInWholeSeconds) {
    CapturedStderr const captured;
    FailingMemory::Allow(0);
    Log_SpecEntry(logSpecError, "f", 7, "%s", longName);
    FailingMemory::AllowAll();
    std::regex const form(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d[+-]\d\d:\d\d \[\d+\] error f:7: )" +
                          std::string(longName) + "\n");
    EXPECT_TRUE(std::regex_match(captured.Text(), form)) << captured.Text();
}

TEST(OutOfMemory, ARequestBeginsOrSaysThatItDoesNot) {
    ZOV_AppData app{};
    CapturedStderr const captured;
    int result = 0;
    int const failures =
        FailEach([&] { result = loareq_initialize(&app); },
                 [&](bool hasFailed) {
                     EXPECT_EQ(result != 0, hasFailed);
                     EXPECT_EQ(QuilloHost::FindRequest(&app) == nullptr, hasFailed);
                     EXPECT_EQ(app.loaState[0] == 0, hasFailed);
                     loareq_free(&app);
                 });
    EXPECT_GE(failures, 2);
    EXPECT_NE(captured.Text().find("loareq_initialize: out of memory\n"), std::string::npos);
}

TEST(OutOfMemory, AStateLeftBehindIsReleasedThoughTheNextRequestCannotBegin) {
    ZOV_AppData app{};
    CapturedStderr const captured;
    std::size_t const before = QuilloHost::CountRequests();
    ASSERT_EQ(loareq_initialize(&app), 0);
    FailingMemory::Allow(0);
    EXPECT_NE(loareq_initialize(&app), 0);
    FailingMemory::AllowAll();
    EXPECT_EQ(QuilloHost::CountRequests(), before);
}

TEST(OutOfMemory, ALostSettingFailsTheFormatterRatherThanChangeTheAnswer) {
    for (auto* set :
         {loareq_set_object, loareq_set_attrs, loareq_set_format, loareq_set_default_val,
          loareq_set_fnName, loareq_set_fnArg, loareq_set_context}) {
        CapturedStderr const captured;
        CapturePipe pipe;
        ZOV_AppData app{{}, nullptr, pipe.out, {}};
        ASSERT_EQ(loareq_initialize(&app), 0);
        set(&app, "short");
        FailingMemory::Allow(0);
        set(&app, longName);
        FailingMemory::AllowAll();
        EXPECT_EQ(app.loaState[6], 0U);
        EXPECT_NE(format_sys_request(&app), 0);
        loareq_free(&app);
        EXPECT_EQ(pipe.Finish(), "");
        EXPECT_NE(captured.Text().find("format_sys_request: memory ran out"), std::string::npos);
    }
}

constexpr FailingMemory::Failure kinds[] = {FailingMemory::AllFromThenOn, FailingMemory::Once};

// What a request is answered, and whether the formatter said that it failed. Only the formatter's
// own allocations are counted.
struct Answered {
    int result;
    std::string text;
    std::string log;
};

Answered Ask(char const* object, char const* attrs) {
    int const allowed = std::exchange(FailingMemory::allowance, -1);
    CapturedStderr const captured;
    CapturePipe pipe;
    ZOV_AppData app{{}, nullptr, pipe.out, {}};
    EXPECT_EQ(loareq_initialize(&app), 0);
    loareq_set_object(&app, object);
    loareq_set_attrs(&app, attrs);
    loareq_set_format(&app, "%1 and %2, in a line that needs the heap\n");
    loareq_set_default_val(&app, "Unavailable, whatever the reason was");
    FailingMemory::allowance = allowed;
    int const result = format_sys_request(&app);
    FailingMemory::allowance = -1;
    loareq_free(&app);
    return {result, pipe.Finish(), captured.Text()};
}

// The answer of `object` comes whole, or the formatter fails with a log entry and works again.
void CheckFormatter(char const* object, char const* attrs, std::string const& expected) {
    for (FailingMemory::Failure const kind : kinds) {
        Answered answered;
        int const failures = FailEach([&] { answered = Ask(object, attrs); },
                                      [&](bool hasFailed) {
                                          EXPECT_EQ(answered.result != 0, hasFailed);
                                          EXPECT_EQ(answered.text, hasFailed ? "" : expected);
                                          EXPECT_EQ(!answered.log.empty(), hasFailed)
                                              << answered.log;
                                          EXPECT_EQ(Ask(object, attrs).text, expected);
                                      },
                                      kind);
        EXPECT_GT(failures, 10);
    }
}

TEST(OutOfMemory, AFormatterAnswersWholeOrFails) {
    FixtureMachine machine;
    machine.Write("proc/meminfo", "MemTotal: 2 kB\n");
    machine.Write("proc/7/stat", "7 (x) S 1 1 1 0 -1 0 0 0 0 0 0 0 0 0 20 0 3 0 5 6 7 8\n");
    machine.Write("proc/uptime", "93784.12 180000.00\n");
    machine.Write("proc/loadavg", "0.15 0.10 0.05 1/234 5678\n");
    machine.Write("proc/self/mountinfo", "36 35 98:0 / / rw,noatime - ext4 /dev/root rw\n");
    std::string const fallback = "Unavailable, whatever the reason was";
    CheckFormatter("memory", "total pid",
                   "2048 and " + fallback + ", in a line that needs the heap\n");
    CheckFormatter("processes", "total pid", fallback + " and 7, in a line that needs the heap\n");
    CheckFormatter("host", "uptime load5", "93784 and 0.10, in a line that needs the heap\n");
    std::string const storage = Ask("storage", "mount size").text;
    EXPECT_EQ(storage.substr(0, 6), "/ and ");
    EXPECT_EQ(storage.find(fallback), std::string::npos);
    CheckFormatter("storage", "mount size", storage);
    machine.Write("proc/self/fd/2", "a line of the log that needs the heap\n");
    CheckFormatter("log info end Line of the log that needs the heap", "offset text",
                   "0 and a line of the log that needs the heap, in a line that needs the heap\n"
                   "0 and , in a line that needs the heap\n");
}

TEST(OutOfMemory, TheInterfacesAreAnsweredWholeOrNotAtAll) {
    FixtureMachine const machine;
    ChangedSystemCalls const calls;
    char name[] = "eth0";
    sockaddr_in address{};
    address.sin_family = AF_INET;
    ifaddrs entry{};
    entry.ifa_name = name;
    entry.ifa_addr = entry.ifa_netmask = reinterpret_cast<sockaddr*>(&address);
    SystemCalls::Now().interfaces = &entry;
    SystemCalls::Now().indices = {{"eth0", 2}};
    CheckFormatter("interfaces", "name ipv4",
                   "eth0 and 0.0.0.0/0, in a line that needs the heap\n");
}

std::string Translated(char* phrase) {
    CapturePipe pipe;
    ZOV_AppData app{"de", nullptr, pipe.out, {}};
    HTTP_Translate_Phrase(&app, phrase);
    FailingMemory::AllowAll();
    return pipe.Finish();
}

// Boost.Locale does without what it tried first when memory ran out just once.
bool MayBeMadeUpFor(FailingMemory::Failure kind) {
    return kind == FailingMemory::Once;
}

TEST(OutOfMemory, CatalogsAreLoadedWholeOrAgain) {
    for (FailingMemory::Failure const kind : kinds) {
        char storage[] = "Storage";
        CapturedStderr const captured;
        std::string text;
        int untranslated = 0;
        int const failures = FailEach(
            [&] {
                {
                    FailingMemory::Pause const pause;
                    QuilloHost::SetCatalogFolder(QUILLO_TEST_CATALOGS);
                }
                text = Translated(storage);
            },
            [&](bool hasFailed) {
                bool const mayFail = hasFailed && (text.empty() || !MayBeMadeUpFor(kind));
                EXPECT_EQ(text, mayFail ? "" : "Speicher");
                untranslated += text.empty() ? 1 : 0;
                EXPECT_EQ(Translated(storage), "Speicher");
                EXPECT_STREQ(HTTP_Extension_Translation_Lang("ar"), "ar-eg");
            },
            kind);
        EXPECT_GT(failures, 30);
        std::string const log = captured.Text();
        EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), untranslated);
        EXPECT_EQ(log.find("catalog"), std::string::npos) << "no catalog is damaged";
    }
}

TEST(OutOfMemory, ALanguageIsNamedOrNot) {
    for (FailingMemory::Failure const kind : kinds) {
        CapturedStderr const captured;
        bool isNamed = false;
        bool isKnown = false;
        auto const forget = [] {
            FailingMemory::Pause const pause;
            QuilloHost::SetCatalogFolder(QUILLO_TEST_CATALOGS);
        };
        FailEach(
            [&] {
                forget();
                isNamed = HTTP_Extension_Translation_Lang("de") != nullptr;
            },
            [&](bool hasFailed) { EXPECT_TRUE(isNamed != hasFailed || MayBeMadeUpFor(kind)); },
            kind);
        FailEach(
            [&] {
                forget();
                isKnown = Trans_LangExists("de") == 1;
            },
            [&](bool hasFailed) { EXPECT_TRUE(isKnown != hasFailed || MayBeMadeUpFor(kind)); },
            kind);
        EXPECT_NE(captured.Text(), "");
    }
}

using OutOfMemoryStore = StoreFixture;

TEST_F(OutOfMemoryStore, ASettingIsReadOrTheCallFails) {
    ASSERT_EQ(ConfigUpdate("x=5"), 0);
    for (FailingMemory::Failure const kind : kinds) {
        CapturedStderr const captured;
        int status = -1;
        int value = 4711;
        int const failures = FailEach(
            [&] {
                value = 4711;
                status = Cfg_GetBoolAttrValue("x", &value);
            },
            [&](bool hasFailed) {
                EXPECT_EQ(status, hasFailed ? QuilloHost::ConfigStatus_StoreFailed : 0);
                EXPECT_EQ(value, hasFailed ? 4711 : 5);
                EXPECT_EQ(Read("x"), 5);
            },
            kind);
        EXPECT_GT(failures, 3);
    }
}

TEST_F(OutOfMemoryStore, ASettingIsDeclaredOrIsNotThere) {
    std::string const value = "a default value that takes memory, too";
    CapturedStderr const captured;
    for (FailingMemory::Failure const kind : kinds) {
        std::string const name = longName + std::to_string(kind);
        int number = 0;
        int const failures = FailEach(
            [&] {
                try {
                    QuilloHost::DeclareSetting(name, value);
                } catch (std::bad_alloc const&) {
                    FailingMemory::AllowAll();
                }
            },
            [&](bool hasFailed) {
                EXPECT_EQ(Cfg_GetBoolAttrValue(name.c_str(), &number),
                          hasFailed ? QuilloHost::ConfigStatus_UnknownName
                                    : QuilloHost::ConfigStatus_NotBoolean);
            },
            kind);
        EXPECT_GT(failures, 1);
    }
}

TEST_F(OutOfMemoryStore, ASettingIsSetOrStaysAsItWas) {
    for (FailingMemory::Failure const kind : kinds) {
        for (bool const isStored : {true, false}) {
            ASSERT_EQ(ConfigUpdate("x=4"), 0);
            CapturedStderr const captured;
            long status = -1;
            int const failures = FailEach(
                [&] { status = isStored ? ConfigUpdate("x=5") : Cfg_SetAttrValue("x", "5"); },
                [&](bool hasFailed) {
                    EXPECT_EQ(status, hasFailed ? QuilloHost::ConfigStatus_StoreFailed : 0);
                    EXPECT_EQ(Values(), hasFailed ? "4 4" : isStored ? "5 5" : "5 4");
                    EXPECT_EQ(ConfigUpdate("x=4"), 0);
                },
                kind);
            EXPECT_GT(failures, 3);
        }
    }
}

}  // namespace
