// An attribute's value as a browser takes it, for tests of what was written.
#ifndef QUILLO_TESTS_KIT_ATTRIBUTE_VALUE_HPP
#define QUILLO_TESTS_KIT_ATTRIBUTE_VALUE_HPP

#include <gtest/gtest.h>

#include <map>
#include <string>

// The text that `value` stands for. Fails the test when `value` holds a quote, an angle bracket, a
// control byte other than tab and line feed, or an '&' that begins no entity.
inline std::string TextOf(std::string const& value) {
    static std::map<std::string, std::string> const entities = {
        {"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&#39;", "'"}, {"&amp;", "&"}};
    std::string text;
    for (std::size_t i = 0; i < value.size(); ++i) {
        unsigned char const byte = static_cast<unsigned char>(value[i]);
        EXPECT_EQ(std::string("<>\"'").find(value[i]), std::string::npos) << value;
        EXPECT_TRUE(byte == '\t' || byte == '\n' || (byte >= 0x20 && byte != 0x7F)) << value;
        if (value[i] != '&') {
            text += value[i];
            continue;
        }
        std::string const entity = value.substr(i, value.find(';', i) + 1 - i);
        auto const found = entities.find(entity);
        EXPECT_NE(found, entities.end()) << value;
        text += found != entities.end() ? found->second : "";
        i += found != entities.end() ? entity.size() - 1 : 0;
    }
    return text;
}

#endif
