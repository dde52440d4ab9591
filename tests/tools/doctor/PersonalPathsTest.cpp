#include "tools/doctor/PersonalPaths.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::personal_paths_test {

namespace {

/// A finding with these texts after the user's folders were replaced.
Finding hidden(const Finding& finding) {
    std::vector<FindingSection> sections{{.title = "Section", .findings = {finding}}};
    hidePerson(sections, {{"/home/jan", "~"}, {"/data/jan/config", "$XDG_CONFIG_HOME"}});
    return sections.front().findings.front();
}

std::string hidden(const std::string& text) { return hidden(Finding{.subject = "", .found = text}).found; }

TEST(PersonalPaths, FoldersOfTheUserAreReplaced) {
    EXPECT_EQ(hidden("/home/jan/.config/kelvinbar/kelvinbar.conf"), "~/.config/kelvinbar/kelvinbar.conf");
    EXPECT_EQ(hidden("/data/jan/config/kelvinbar.conf is used"), "$XDG_CONFIG_HOME/kelvinbar.conf is used");
    EXPECT_EQ(hidden("/home/jan"), "~");
    EXPECT_EQ(hidden("/home/jan, /home/jan/x"), "~, ~/x");
    EXPECT_EQ(hidden("(/home/jan)"), "(~)");
}

TEST(PersonalPaths, FoldersOfOthersAreNot) {
    for (const char* const other : {"/home/jana/x", "/home/jan.old", "/home/jan-2", "/home/jané"}) {
        EXPECT_EQ(hidden(other), other);
    }
    EXPECT_EQ(hidden("/etc/sensors.d/board"), "/etc/sensors.d/board");
}

TEST(PersonalPaths, EveryTextOfAFindingIsCleaned) {
    const Finding finding = hidden({.subject = "enx001122334455",
                                    .found = "left out: hid-00:11:22:33:44:66-battery",
                                    .advice = "Look into /home/jan at enx001122334455"});
    EXPECT_EQ(finding.subject, "enxxxxxxxxxxx47");
    EXPECT_EQ(finding.found, "left out: hid-xx:xx:xx:xx:xx:01-battery");
    EXPECT_EQ(finding.advice, "Look into ~ at enxxxxxxxxxxx47");
}

TEST(PersonalPaths, SerialNumbersOfBatteriesAreMasked) {
    EXPECT_EQ(hidden("1 unreadable: hid-F0T938400Q7J7QRAD-battery/capacity"),
              "1 unreadable: hid-xxxxxx50-battery/capacity");
}

} // namespace

} // namespace kelvinbar::personal_paths_test
