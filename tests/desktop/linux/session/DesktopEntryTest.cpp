#include "desktop/linux/session/DesktopEntry.h"

#include "tests/desktop/linux/session/ExecValueReader.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::desktop_entry_test {

namespace {

using Texts = std::vector<std::string>;

TEST(DesktopExecValue, QuotesArgumentsAndSeparatesThemByOneSpace) {
    EXPECT_EQ(desktopExecValue({"/usr/bin/kelvinbar"}), R"("/usr/bin/kelvinbar")");
    EXPECT_EQ(desktopExecValue({"/opt/my tools/kelvinbar", "--a b"}), R"("/opt/my tools/kelvinbar" "--a b")");
}

TEST(DesktopExecValue, EscapesWhatMeansSomethingInQuotes) {
    EXPECT_EQ(desktopExecValue({R"(a"b)"}), R"("a\\"b")");
    EXPECT_EQ(desktopExecValue({"a`b"}), R"("a\\`b")");
    EXPECT_EQ(desktopExecValue({"a$b"}), R"("a\\$b")");
    EXPECT_EQ(desktopExecValue({R"(a\b)"}), R"("a\\\\b")");
}

TEST(DesktopExecValue, DoublesThePercentSign) {
    EXPECT_EQ(desktopExecValue({"100%f"}), R"("100%%f")");
    EXPECT_EQ(desktopExecValue({"%%"}), R"("%%%%")");
}

TEST(DesktopExecValue, StaysOnOneLine) {
    EXPECT_EQ(desktopExecValue({"a\nb"}), R"("a\nb")");
    EXPECT_EQ(desktopExecValue({"a\rb"}), R"("a\rb")");
    EXPECT_EQ(desktopExecValue({"a\tb"}), R"("a\tb")");
}

TEST(DesktopExecValue, DistinguishesABackslashBeforeAnNFromALineFeed) {
    EXPECT_EQ(desktopExecValue({R"(a\nb)"}), R"("a\\\\nb")");
}

TEST(DesktopExecValue, KeepsWhatIsNotASCII) {
    EXPECT_EQ(desktopExecValue({"/home/jörg/温度/kelvinbar"}), R"("/home/jörg/温度/kelvinbar")");
}

TEST(DesktopExecValue, KeepsAnEmptyArgument) {
    EXPECT_EQ(desktopExecValue({"kelvinbar", "", "x"}), R"("kelvinbar" "" "x")");
}

TEST(DesktopExecValue, IsUnderstoodForEveryCharacter) {
    for (int code = 1; code < 256; ++code) {
        const std::string argument = std::string("/a").append(1, static_cast<char>(code)).append("b");
        const Texts command{argument, std::string(2, static_cast<char>(code))};
        EXPECT_EQ(commandIn(desktopExecValue(command)), command) << code;
        EXPECT_EQ(desktopExecValue(command).find('\n'), std::string::npos) << code;
    }
}

TEST(CommandOfExecValue, IsWhatWasWritten) {
    for (int code = 1; code < 256; ++code) {
        const std::string argument = std::string("/a").append(1, static_cast<char>(code)).append("b");
        const Texts command{argument, std::string(2, static_cast<char>(code))};
        EXPECT_EQ(commandOfExecValue(desktopExecValue(command)), command) << code;
    }
}

TEST(CommandOfExecValue, SeparatesUnquotedArguments) {
    EXPECT_EQ(commandOfExecValue("kelvinbar  --verbose x"), (Texts{"kelvinbar", "--verbose", "x"}));
    EXPECT_EQ(commandOfExecValue(" kelvinbar "), Texts{"kelvinbar"});
    EXPECT_EQ(commandOfExecValue(""), Texts());
    EXPECT_EQ(commandOfExecValue(R"("" "a b")"), (Texts{"", "a b"}));
}

TEST(CommandOfExecValue, LeavesFieldCodesOut) {
    EXPECT_EQ(commandOfExecValue("kelvinbar %U --title=%c"), (Texts{"kelvinbar", "--title="}));
    EXPECT_EQ(commandOfExecValue("100%%"), Texts{"100%"});
}

TEST(CommandOfExecValue, TakesWhatIsCutOffAsItIs) {
    EXPECT_EQ(commandOfExecValue("\"a b"), Texts{"a b"});
    EXPECT_EQ(commandOfExecValue("a%"), Texts{"a%"});
    EXPECT_EQ(commandOfExecValue("a\\"), Texts{"a\\"});
}

TEST(EntryValue, IsUnescapedByItsSequencesOnly) {
    EXPECT_EQ(unescapedEntryValue(R"(a\\sb\sc\nd\\)"), "a\\sb c\nd\\");
    EXPECT_EQ(unescapedEntryValue(R"(\x)"), R"(\x)");
}

TEST(EntryShownIn, DependsOnTheDesktopsThatItNames) {
    const auto entry = [](const std::string& line) { return entryLines("[Desktop Entry]\n" + line + "\n"); };
    EXPECT_TRUE(isShownIn(entry(""), "XFCE"));
    EXPECT_TRUE(isShownIn(entry(""), ""));
    EXPECT_TRUE(isShownIn(entry("OnlyShowIn=LXQt;XFCE;"), "XFCE"));
    EXPECT_TRUE(isShownIn(entry("OnlyShowIn=GNOME;"), "Budgie:GNOME"));
    EXPECT_FALSE(isShownIn(entry("OnlyShowIn=LXQt;"), "XFCE"));
    EXPECT_FALSE(isShownIn(entry("OnlyShowIn=XFCE;"), ""));
    EXPECT_FALSE(isShownIn(entry("OnlyShowIn="), "XFCE"));
    EXPECT_FALSE(isShownIn(entry("NotShowIn=XFCE"), "XFCE"));
    EXPECT_TRUE(isShownIn(entry("NotShowIn=GNOME;KDE;"), "XFCE"));
    EXPECT_FALSE(isShownIn(entry("NotShowIn=GNOME;"), "ubuntu:GNOME"));
}

TEST(EntryLines, GetAValueInTheirGroup) {
    EXPECT_EQ(entryText(withEntryValue(entryLines("# mine\n"), "A", "1")), "[Desktop Entry]\nA=1\n# mine\n");
    EXPECT_EQ(entryText(withEntryValue(entryLines("[X]\nA=0\n[Desktop Entry]\nA = 2\nB=3"), "A", "1")),
              "[X]\nA=0\n[Desktop Entry]\nA=1\nB=3\n");
}

TEST(EntryLines, GetTheirGroupWithOneValueForTheKey) {
    EXPECT_EQ(withEntryValue({"Key=old", "Other=1"}, "Key", "new"),
              (EntryLines{"[Desktop Entry]", "Key=new", "Other=1"}));
}

TEST(EntryLines, LoseAValueOfTheirGroupOnly) {
    EXPECT_EQ(entryText(withoutEntryValue(entryLines("[X]\nA=0\n[Desktop Entry]\nA = 2\nB=3"), "A")),
              "[X]\nA=0\n[Desktop Entry]\nB=3\n");
}

} // namespace
} // namespace kelvinbar::desktop_entry_test
