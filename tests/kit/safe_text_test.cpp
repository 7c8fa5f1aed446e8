#include <quillo_kit/safe.hpp>

#include <set>
#include <stdexcept>

#include "kit/attribute_value.hpp"
#include "support/external_texts.hpp"
#include "support/page_test.hpp"
#include "text/sample_texts.hpp"

using namespace QuilloKit;

namespace {

struct Row {
    std::string text;
    std::string written;
};

// Every byte there is, NUL first.
std::string EveryByte() {
    return std::string(1, '\0') + AllBytes();
}

using SafeAttrTest = PageTest;
using JsStringTest = PageTest;
using SafeNameTest = PageTest;

TEST_F(SafeAttrTest, NoTextEndsTheValueOrTheTag) {
    for (Row const& row :
         std::vector<Row>{{"", ""},
                          {"plain", "plain"},
                          {"a<\"b\" & 'c'", "a&lt;&quot;b&quot; &amp; &#39;c&#39;"},
                          {"\"><script>x</script>", "&quot;&gt;&lt;script&gt;x&lt;/script&gt;"},
                          {"' onfocus='x", "&#39; onfocus=&#39;x"},
                          {"&quot;", "&amp;quot;"},
                          {"&#39;", "&amp;#39;"},
                          {"a\tb\nc", "a\tb\nc"},
                          {"a\rb\x7F", "a_b_"},
                          {"\xC3\xBC \xE2\x80\xA8", "\xC3\xBC \xE2\x80\xA8"},
                          {"\xC3", "\xC3"},
                          {std::string("a\0\"b", 4), "a"}}) {
        EXPECT_EQ(SafeAttr(row.text), row.written);
    }
}

TEST_F(SafeAttrTest, EachByteIsItselfOrAnEntityOrAnUnderscore) {
    for (char const c : EveryByte()) {
        unsigned char const byte = static_cast<unsigned char>(c);
        std::string const written = SafeAttr(std::string("a") + c + "b");
        bool const isControl = (byte < 0x20 && c != '\t' && c != '\n') || byte == 0x7F;
        std::string const seen(1, isControl ? '_' : c);
        EXPECT_EQ(TextOf(written), c == '\0' ? "a" : "a" + seen + "b") << int(byte);
    }
}

TEST_F(JsStringTest, NoTextEndsTheStringOrTheScript) {
    for (Row const& row : std::vector<Row>{
             {"", "\"\""},
             {"it's", "\"it's\""},
             {"say \"</script>\"", "\"say \\\"\\u003C/script>\\\"\""},
             {"<!--<script>", "\"\\u003C!--\\u003Cscript>\""},
             {"\\", "\"\\\\\""},
             {"\\\"", "\"\\\\\\\"\""},
             {"\";alert(1)//", "\"\\\";alert(1)//\""},
             {"a\nb\r\n", "\"a\\u000Ab\\u000D\\u000A\""},
             {"\xE2\x80\xA8|\xE2\x80\xA9|\xE2\x80\xAA", "\"\\u2028|\\u2029|\xE2\x80\xAA\""},
             {"\xE2\x80", "\"\xE2\x80\""},
             {std::string("\"a\0b", 4), "\"\\\"a\\u0000b\""}}) {
        EXPECT_EQ(JsString(row.text), row.written);
    }
}

// Whether `js` is one string from its first byte to its last.
void ExpectOneString(std::string const& js) {
    ASSERT_GE(js.size(), 2U);
    EXPECT_EQ(js.front(), '"');
    std::size_t end = 1;
    while (end < js.size() && js[end] != '"') {
        EXPECT_GE(static_cast<unsigned char>(js[end]), 0x20U) << js;
        EXPECT_NE(js[end], '<') << js;
        end += js[end] == '\\' ? 2 : 1;
    }
    EXPECT_EQ(end, js.size() - 1) << js;
    EXPECT_EQ(js.find("\xE2\x80\xA8"), std::string::npos);
    EXPECT_EQ(js.find("\xE2\x80\xA9"), std::string::npos);
}

TEST_F(JsStringTest, TheStringIsTheTextWhateverItsBytes) {
    std::vector<std::string> texts = AllTexts("\\\"</u\n", 4);
    for (char const c : EveryByte()) {
        texts.push_back(std::string(1, c));
        texts.push_back(std::string("\"") + c + "b");
        texts.push_back(std::string("\\") + c);
    }
    for (std::string const& text : RandomTexts("\xE2\x80\xA8\xA9", 12, 300)) {
        texts.push_back(text);
    }
    for (std::string const& text : texts) {
        std::string const js = JsString(text);
        ExpectOneString(js);
        EXPECT_EQ(JsonStrings(js), std::vector<std::string>{text}) << js;
    }
}

bool IsRefused(std::string const& name) {
    try {
        EXPECT_EQ(SafeName(name), name);
        return false;
    } catch (std::invalid_argument const&) {
        return true;
    }
}

TEST_F(SafeNameTest, ANameIsALetterOrUnderscoreAndThenLettersDigitsAndUnderscores) {
    std::string const first = "_ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    std::string const later = first + "0123456789";
    for (char const c : EveryByte()) {
        EXPECT_EQ(IsRefused(std::string(1, c)), first.find(c) == std::string::npos) << int(c);
        EXPECT_EQ(IsRefused(std::string("a") + c), later.find(c) == std::string::npos) << int(c);
        EXPECT_EQ(IsRefused(std::string("a") + c + "b"), later.find(c) == std::string::npos);
    }
    for (std::string const name : {"user", "_", "_1", "User_1", "x9"}) {
        EXPECT_FALSE(IsRefused(name)) << name;
    }
    for (std::string const name : {"", "1a", "a b", "a.b", "a-b", "f;alert(1)", "\xC3\xBC", "a\n",
                                   " a", "a()", "a[0]", "\"", "<b>"}) {
        EXPECT_TRUE(IsRefused(name)) << name;
    }
}

std::string Refusal(std::string const& name) {
    try {
        SafeName(name);
    } catch (std::invalid_argument const& error) {
        return error.what();
    }
    return "";
}

TEST_F(SafeNameTest, TheRefusalSaysWhereTheNameIsWrongAndShowsNoneOfIt) {
    EXPECT_EQ(Refusal("user<b>"),
              "SafeName: byte 4 of 7 is wrong; a name is a letter or '_', and then letters, digits "
              "and '_'");
    EXPECT_EQ(Refusal(""), "SafeName: the name is empty; it needs a letter or '_' first");
}

}  // namespace
