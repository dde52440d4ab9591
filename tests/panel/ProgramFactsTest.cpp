#include "panel/ProgramFacts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::program_facts_test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ProgramFacts, AreVersionAndLicenceThenThePreferencesThenTheLog) {
    EXPECT_THAT(programLines({.version = "1.2.3",
                              .preferencesPlace = "/home/ada/.config/kelvinbar/kelvinbar.conf",
                              .program = "/usr/bin/kelvinbar"}),
                ElementsAre("Version 1.2.3, MIT License",
                            "Preferences: /home/ada/.config/kelvinbar/kelvinbar.conf",
                            "Log: quit, then run in a terminal\n/usr/bin/kelvinbar --verbose"));
}

TEST(ProgramFacts, WhatIsNotKnownHasNoLine) { EXPECT_THAT(programLines({}), IsEmpty()); }

} // namespace
} // namespace kelvinbar::program_facts_test
