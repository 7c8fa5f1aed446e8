#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <locale>

#include "host/catalogs.hpp"
#include "host/contract.hpp"
#include "host/host.hpp"
#include "host/phrase_context.hpp"
#include "platform/capture_pipe.hpp"
#include "platform/captured_stderr.hpp"
#include "platform/plain_user.hpp"
#include "temp_folder.hpp"

using namespace QuilloHost;

namespace {

class TranslationServiceTest : public ::testing::Test {
protected:
    TranslationServiceTest() : app() {
        SetCatalogFolder(QUILLO_TEST_CATALOGS);
        app.out = std::tmpfile();
    }
    ~TranslationServiceTest() override { std::fclose(app.out); }

    std::string Written(char const* language, char const* phrase, char const* context) {
        std::strcpy(app.preferredLang, language);
        EXPECT_EQ(loareq_initialize(&app), 0);
        loareq_set_fnArg(&app, phrase);
        loareq_set_context(&app, context);
        std::rewind(app.out);
        HTTP_Translate_Phrase(&app, reinterpret_cast<char*>(app.loaState[6]));
        std::string text(static_cast<std::size_t>(std::ftell(app.out)), '\0');
        std::rewind(app.out);
        EXPECT_EQ(std::fread(&text[0], 1, text.size(), app.out), text.size());
        loareq_free(&app);
        return text;
    }

    ZOV_AppData app;
};

TEST_F(TranslationServiceTest, APhraseIsWrittenInTheReadersLanguage) {
    EXPECT_EQ(Written("de", "Storage", "none"), "Speicher");
    EXPECT_EQ(Written("ar-EG", "Storage", "none"), "التخزين");
    EXPECT_EQ(Written("en", "Storage", "none"), "Storage");
    EXPECT_EQ(Written("fr", "Storage", "none"), "Storage") << "English, when none suits";
    EXPECT_EQ(Written("", "Storage", "none"), "Storage");
}

TEST_F(TranslationServiceTest, TheServiceNamesALanguageByItsCatalog) {
    EXPECT_EQ(CatalogNames(), (std::vector<std::string>{"ar-eg", "de-de", "en-us"}));
    EXPECT_STREQ(HTTP_Extension_Translation_Lang("de-AT, en;q=0.5"), "de-de");
    EXPECT_EQ(HTTP_Extension_Translation_Lang("fr"), nullptr);
    EXPECT_EQ(HTTP_Extension_Translation_Lang(""), nullptr);
    EXPECT_EQ(HTTP_Extension_Translation_Lang(nullptr), nullptr);
}

TEST_F(TranslationServiceTest, TheNameMayBeDamagedByTheCaller) {
    char* const name = HTTP_Extension_Translation_Lang("de");
    name[2] = '\0';
    EXPECT_STREQ(HTTP_Extension_Translation_Lang("de"), "de-de");
}

TEST_F(TranslationServiceTest, ACodeIsKnownWhenACatalogHasItsLanguage) {
    EXPECT_EQ(Trans_LangExists("de"), 1);
    EXPECT_EQ(Trans_LangExists("DE"), 1);
    EXPECT_EQ(Trans_LangExists("ar"), 1);
    for (char const* const code : {"fr", "", "d", "de-de", "*", "--"}) {
        EXPECT_EQ(Trans_LangExists(code), 0) << code;
    }
    EXPECT_EQ(Trans_LangExists(nullptr), 0);
}

TEST_F(TranslationServiceTest, AnUnknownPhraseAnswersItselfAndIsLoggedOnce) {
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(Written("de", "never <heard> of", "html"), "never &lt;heard&gt; of");
    EXPECT_EQ(Written("de", "never <heard> of", "none"), "never <heard> of");
    std::string const log = ::testing::internal::GetCapturedStderr();
    std::string const entry = "catalog de-de has no phrase \"never <heard> of\"";
    ASSERT_NE(log.find(entry), std::string::npos);
    EXPECT_EQ(log.find(entry, log.find(entry) + 1), std::string::npos);
}

TEST_F(TranslationServiceTest, ALongUnknownPhraseIsShownInPart) {
    ::testing::internal::CaptureStderr();
    std::string const phrase = std::string(200, 'u') + "nknown";
    EXPECT_EQ(Written("de", phrase.c_str(), "none"), phrase);
    EXPECT_EQ(Written("de", (phrase + " as well").c_str(), "none"), phrase + " as well");
    std::string const log = ::testing::internal::GetCapturedStderr();
    EXPECT_NE(log.find("has no phrase \"" + std::string(200, 'u') + "...\"\n"), std::string::npos)
        << log;
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 1) << log;
}

// The pipe is read when the phrase has been written: one that waited would wait for ever.
TEST_F(TranslationServiceTest, APhraseLargerThanThePipeEnlargesIt) {
    CapturePipe pipe;
    std::string const phrase(pipe.Capacity() + 1, 'x');
    ZOV_AppData request{{}, nullptr, pipe.out, {}};
    HTTP_Translate_Phrase(&request, std::string(phrase).data());
    EXPECT_EQ(pipe.Finish(), phrase);
}

TEST_F(TranslationServiceTest, APhraseThatNoPipeTakesIsNotWrittenBehindALogEntry) {
    std::size_t largest = 0;
    std::ifstream("/proc/sys/fs/pipe-max-size") >> largest;
    PlainUser const user;
    CapturePipe pipe;
    ZOV_AppData request{{}, nullptr, pipe.out, {}};
    CapturedStderr const captured;
    HTTP_Translate_Phrase(&request, std::string(largest + 1, 'y').data());
    EXPECT_EQ(pipe.Finish(), "");
    EXPECT_NE(captured.Text().find("phrase \"" + std::string(200, 'y') +
                                   "...\": the answer takes " + std::to_string(largest + 1)),
              std::string::npos)
        << captured.Text();
}

TEST_F(TranslationServiceTest, TheEmptyPhraseIsNotTheCatalogsHeader) {
    EXPECT_EQ(Written("de", "", "none"), "");
}

TEST_F(TranslationServiceTest, TheContextOfTheRequestDecidesHowAPhraseIsWritten) {
    EXPECT_EQ(Written("en", "a\"b", "js"), "a\\\"b");
    EXPECT_EQ(Written("en", "a\"b", nullptr), "a&quot;b");
}

TEST_F(TranslationServiceTest, WithoutPhraseOrOutputNothingIsWritten) {
    HTTP_Translate_Phrase(&app, nullptr);
    EXPECT_EQ(std::ftell(app.out), 0);
    HTTP_Translate_Phrase(nullptr, nullptr);
}

TEST_F(TranslationServiceTest, TheGlobalLocaleStaysAsItIs) {
    std::locale const before;
    Written("de", "Storage", "none");
    EXPECT_TRUE(std::locale() == before);
    EXPECT_TRUE(std::locale() == std::locale::classic());
}

TEST_F(TranslationServiceTest, APhraseOfADamagedCatalogIsWrittenAsItIsBehindOneLogEntry) {
    TempFolder const folder;
    folder.Write("de-de/LC_MESSAGES/quillo.mo", "this is no catalog, and long enough to be read");
    SetCatalogFolder(folder.path);
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(Written("de", "Storage", "none"), "Storage");
    EXPECT_EQ(Written("de", "Memory", "none"), "Memory");
    EXPECT_EQ(Trans_LangExists("de"), 0);
    std::string const log = ::testing::internal::GetCapturedStderr();
    EXPECT_EQ(std::count(log.begin(), log.end(), '\n'), 1) << log;
    EXPECT_NE(log.find("catalog " + folder.path + "/de-de/LC_MESSAGES/quillo.mo cannot be read"),
              std::string::npos)
        << log;
}

TEST(PhraseContext, EachContextHasItsEscapes) {
    struct Row {
        char const* context;
        char const* text;
        char const* written;
    };
    for (Row const& row :
         {Row{"none", "a \"b\" <c>\\ '&\n", "a \"b\" <c>\\ '&\n"},
          Row{"html", "a \"b\" <c>\\ '&\n", "a &quot;b&quot; &lt;c&gt;\\ &#39;&amp;\n"},
          Row{"", "<", "&lt;"}, Row{"unknown-LoaContext", "<", "&lt;"},
          Row{"js", "a \"b\" <c>\\ '&\r\n", "a \\\"b\\\" \\u003Cc>\\\\ \\'&\\r\\n"},
          Row{"js", "\xE2\x80\xA8|\xE2\x80\xA9|\xE2\x80\xAA", "\\u2028|\\u2029|\xE2\x80\xAA"},
          Row{"php", "a \"b\" <c>\\ '", "a \"b\" <c>\\\\ \\'"},
          Row{"both", "<\"\\", "&lt;&quot;\\\\"}}) {
        EXPECT_EQ(InContext(row.context, row.text), row.written) << row.context;
    }
}

}  // namespace
