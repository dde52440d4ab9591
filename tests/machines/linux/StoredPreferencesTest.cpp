#include "machines/linux/StoredPreferences.h"

#include "machines/Platform.h"
#include "tests/tools/TemporaryFolder.h"

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/wait.h>

#include <gtest/gtest.h>
#include <unistd.h>

namespace kelvinbar::stored_preferences_test {

namespace {

TextList listOf(std::string_view value) {
    const Dictionary lists = preferenceListsIn("[General]\nList=" + std::string(value) + "\n");
    const auto* list = lists.find<TextList>("List");
    return list == nullptr ? TextList{"(no list)"} : *list;
}

TEST(PreferenceLists, AreSeparatedByCommas) {
    EXPECT_EQ(listOf("TC0P, k10temp-pci-00c3/temp1, power_meter-acpi-0#2/power1"),
              (TextList{"TC0P", "k10temp-pci-00c3/temp1", "power_meter-acpi-0#2/power1"}));
    EXPECT_EQ(listOf("TC0P"), TextList{"TC0P"});
}

TEST(PreferenceLists, KeepWhatIsInQuotes) {
    EXPECT_EQ(listOf("\"REV \", \"a,b\", \"c;d\""), (TextList{"REV ", "a,b", "c;d"}));
    EXPECT_EQ(listOf("  a b  ,c"), (TextList{"a b", "c"}));
}

TEST(PreferenceLists, HaveTheirCharactersBack) {
    EXPECT_EQ(listOf(R"(key\t/sys/devices, a\\b, \"c\", @@d, \x7e)"),
              (TextList{"key\t/sys/devices", "a\\b", "\"c\"", "@d", "~"}));
}

TEST(PreferenceLists, AreNotMadeFromOtherTypes) { EXPECT_EQ(listOf("@Size(4 5)"), TextList{"(no list)"}); }

TEST(PreferenceLists, AreThoseOfTheFirstSection) {
    EXPECT_EQ(preferenceListsIn("[General]\nA=1\n;B=2\njunk\n[Other]\nA=3\nC=4\n"),
              (Dictionary{{"A", TextList{"1"}}}));
    EXPECT_EQ(preferenceListsIn(""), Dictionary());
}

TEST(PreferenceLists, EndWithTheirTextWhereItIsCut) {
    EXPECT_EQ(listOf("a, \"b"), (TextList{"a", "b"}));
    EXPECT_EQ(listOf("a\\"), TextList{"a\\"});
    EXPECT_EQ(listOf("\\x"), TextList{std::string(1, '\0')});
}

/// Whether `holds` in a child process with this folder of preferences.
bool holdsWith(const std::string& folder, const std::function<bool()>& holds) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
        ::_exit(holds() ? 0 : 1);
    }
    int status = -1;
    return ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST(StoredPreferences, AreReadFromTheUsersFolder) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.path("kelvinbar"));
    static_cast<void>(
        folder.write("kelvinbar/kelvinbar.conf", "[General]\nKelvinbarMenuBarKeys=TC0P, F0Ac\n"));
    EXPECT_TRUE(holdsWith(folder.path(""), [] {
        return storedPreferenceLists() == Dictionary{{"KelvinbarMenuBarKeys", TextList{"TC0P", "F0Ac"}}};
    }));
}

TEST(StoredPreferences, AreEmptyWithoutAFile) {
    const TemporaryFolder folder;
    EXPECT_TRUE(holdsWith(folder.path("missing"), [] { return storedPreferenceLists() == Dictionary(); }));
}

TEST(StoredPreferences, HaveAnotherStampOnceTheyAreReplaced) {
    const TemporaryFolder folder;
    EXPECT_TRUE(holdsWith(folder.path(""), [] { return storedPreferencesStamp().empty(); }));
    std::filesystem::create_directory(folder.path("kelvinbar"));
    const std::string file = folder.write("kelvinbar/kelvinbar.conf", "a");
    EXPECT_TRUE(holdsWith(folder.path(""), [&] {
        const std::string before = storedPreferencesStamp();
        const bool isStable = !before.empty() && storedPreferencesStamp() == before;
        std::filesystem::rename(folder.write("new", "b"), file);
        return isStable && storedPreferencesStamp() != before;
    }));
}

TEST(StoredPreferences, DoNotWaitForAPipe) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.path("kelvinbar"));
    ASSERT_EQ(::mkfifo(folder.path("kelvinbar/kelvinbar.conf").c_str(), 0600), 0);
    EXPECT_TRUE(holdsWith(folder.path(""), [] { return storedPreferenceLists() == Dictionary(); }));
}

TEST(StoredPreferences, AreInTheHomeFolderUnlessTheEnvironmentNamesAnother) {
    EXPECT_TRUE(
        holdsWith("/elsewhere", [] { return preferencesFile() == "/elsewhere/kelvinbar/kelvinbar.conf"; }));
    EXPECT_TRUE(holdsWith("relative", [] {
        ::setenv("HOME", "/home/ada", 1);
        return preferencesFile() == "/home/ada/.config/kelvinbar/kelvinbar.conf";
    }));
}

} // namespace
} // namespace kelvinbar::stored_preferences_test
