#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar {

/// Resolves the escape sequences of a string value.
inline std::string unescapedText(std::string_view value) {
    const std::map<char, char> meanings{{'s', ' '}, {'n', '\n'}, {'t', '\t'}, {'r', '\r'}, {'\\', '\\'}};
    std::string text;
    for (std::size_t place = 0; place < value.size(); ++place) {
        if (value[place] != '\\') {
            text += value[place];
            continue;
        }
        ++place;
        EXPECT_LT(place, value.size()) << value;
        const auto meaning = meanings.find(value[place]);
        EXPECT_NE(meaning, meanings.end()) << value;
        text += meaning->second;
    }
    return text;
}

/// Parses the value of an Exec key into the program and its arguments, as a desktop does. Field codes such as
/// "%f" are not expected here.
inline std::vector<std::string> commandIn(std::string_view value) {
    constexpr std::string_view escapedInQuotes = "\"`$\\";
    constexpr std::string_view reserved = " \t\n\"'\\><~|&;$*?#()`";
    const std::string text = unescapedText(value);
    std::vector<std::string> command;
    bool isInQuotes = false;
    bool isInArgument = false;
    for (std::size_t place = 0; place < text.size(); ++place) {
        char character = text[place];
        if (!isInQuotes && character == ' ') {
            isInArgument = false;
            continue;
        }
        if (!isInArgument) command.emplace_back();
        isInArgument = true;
        if (character == '"') {
            isInQuotes = !isInQuotes;
            continue;
        }
        if (isInQuotes && character == '\\') {
            character = text[++place];
            EXPECT_NE(escapedInQuotes.find(character), std::string_view::npos) << value;
        } else if (isInQuotes) {
            EXPECT_EQ(escapedInQuotes.find(character), std::string_view::npos) << value;
        } else {
            EXPECT_EQ(reserved.find(character), std::string_view::npos) << value;
        }
        if (character == '%') {
            EXPECT_EQ(text[++place], '%') << value;
        }
        command.back() += character;
    }
    EXPECT_FALSE(isInQuotes) << value;
    return command;
}

} // namespace kelvinbar
