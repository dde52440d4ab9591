#include "tools/doctor/FindingsText.h"

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::findings_text_test {

namespace {

const std::vector<FindingSection> sections{
    {.title = "Sources",
     .findings = {{.subject = "hardware monitors", .state = FindingState::good, .found = "31 readings"},
                  {.subject = "energy counters",
                   .state = FindingState::problem,
                   .found = "only the administrator may read them",
                   .advice = "Install the rule"},
                  {.subject = "configuration", .state = FindingState::note, .found = "none"}}},
    {.title = "Tray", .findings = {{.subject = "host", .state = FindingState::good, .found = "GNOME"}}}};

const FindingsReport report{.program = "kelvinbar 1.2.3", .sections = sections};

TEST(FindingsText, HasALineAFindingUnderItsHeadingWithTheAdviceBelow) {
    EXPECT_EQ(findingsText(report), "kelvinbar 1.2.3 --doctor\n"
                                    "1 problem, marked !!\n"
                                    "\n"
                                    "Sources\n"
                                    "  ok  hardware monitors: 31 readings\n"
                                    "  !!  energy counters: only the administrator may read them\n"
                                    "      -> Install the rule\n"
                                    "  -   configuration: none\n"
                                    "\n"
                                    "Tray\n"
                                    "  ok  host: GNOME\n");
}

TEST(FindingsText, SaysThatNothingIsWrong) {
    const std::vector<FindingSection> fine{sections.back()};
    EXPECT_EQ(findingsText({.program = "kelvinbar 1.2.3", .sections = fine}),
              "kelvinbar 1.2.3 --doctor\nNothing is wrong.\n\nTray\n  ok  host: GNOME\n");
}

TEST(FindingsText, KeepsATextFromADriverOnItsLine) {
    const std::vector<FindingSection> odd{
        {.title = "Sources", .findings = {{.subject = "a\nb", .found = "\x1B[2J", .advice = "\xFF"}}}};
    EXPECT_EQ(findingsText({.program = "p", .sections = odd}),
              "p --doctor\nNothing is wrong.\n\nSources\n  ok  a b:  [2J\n      -> (not legible)\n");
}

TEST(FindingsText, IsAlsoADocumentWithEveryField) {
    const auto document = nlohmann::json::parse(findingsJson(report));
    EXPECT_EQ(document["schema"], findingsSchemaVersion);
    EXPECT_EQ(document["program"], "kelvinbar 1.2.3");
    EXPECT_EQ(document["problems"], 1);
    ASSERT_EQ(document["sections"].size(), 2U);
    EXPECT_EQ(document["sections"][0]["title"], "Sources");
    const auto& findings = document["sections"][0]["findings"];
    EXPECT_EQ(findings[1], nlohmann::json({{"subject", "energy counters"},
                                           {"state", "problem"},
                                           {"found", "only the administrator may read them"},
                                           {"advice", "Install the rule"}}));
    EXPECT_EQ(findings[0]["state"], "good");
    EXPECT_EQ(findings[2]["state"], "note");
    EXPECT_FALSE(findings[0].contains("advice"));
}

TEST(FindingsText, TheDocumentIsWellFormedWhateverADriverSays) {
    const std::vector<FindingSection> odd{{.title = "S", .findings = {{.subject = "\xFF\"\n", .found = ""}}}};
    EXPECT_EQ(nlohmann::json::parse(findingsJson({.program = "p", .sections = odd}))["sections"].size(), 1U);
}

} // namespace

} // namespace kelvinbar::findings_text_test
