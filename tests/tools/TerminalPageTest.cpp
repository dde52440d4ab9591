#include "tools/TerminalPage.h"

#include <cstddef>

#include <gtest/gtest.h>

namespace kelvinbar::terminal_page_test {

namespace {

TEST(TerminalPage, IsDrawnFromTheTopOverThePageBefore) {
    EXPECT_EQ(pageInPlace("A\n\nB\n", {.columns = 80, .rows = 24}), "\x1b[HA\x1b[K\n\x1b[K\nB\x1b[K\n\x1b[J");
}

TEST(TerminalPage, LeavesALineForTheCursor) {
    EXPECT_EQ(pageInPlace("A\nB\n", {.columns = 80, .rows = 3}), "\x1b[HA\x1b[K\nB\x1b[K\n\x1b[J");
}

TEST(TerminalPage, CountsTheLinesThatDoNotFit) {
    EXPECT_EQ(pageInPlace("A\nB\nC\nD\n", {.columns = 80, .rows = 4}),
              "\x1b[HA\x1b[K\nB\x1b[K\n… 2 more lines\x1b[K\n\x1b[J");
    for (const std::size_t rows : {1U, 2U}) {
        EXPECT_EQ(pageInPlace("A\nB\n", {.columns = 80, .rows = rows}), "\x1b[H… 2 more lines\x1b[K\n\x1b[J");
    }
}

/// To clear the rest of a line that is full would clear its last character.
TEST(TerminalPage, ClearsNothingOfALineThatIsFull) {
    EXPECT_EQ(pageInPlace("51 °C\n", {.columns = 5, .rows = 24}), "\x1b[H51 °C\n\x1b[J");
}

TEST(TerminalPage, CutsALineByCharacters) {
    EXPECT_EQ(pageInPlace("51 °C x\n", {.columns = 5, .rows = 24}), "\x1b[H51 °…\n\x1b[J");
    EXPECT_EQ(pageInPlace("51 °C x\n", {.columns = 1, .rows = 24}), "\x1b[H…\n\x1b[J");
}

TEST(TerminalPage, KeepsTheColoursOfALineThatIsCut) {
    EXPECT_EQ(pageInPlace("a\x1b[1mbcd\x1b[0m\n", {.columns = 4, .rows = 24}),
              "\x1b[Ha\x1b[1mbcd\x1b[0m\n\x1b[J");
    EXPECT_EQ(pageInPlace("a\x1b[1mbcd\x1b[0m\n", {.columns = 3, .rows = 24}),
              "\x1b[Ha\x1b[1mb…\x1b[0m\n\x1b[J");
}

TEST(TerminalPage, CountsTheColumnsOfATab) {
    EXPECT_EQ(pageInPlace("ab\tc\n", {.columns = 9, .rows = 24}), "\x1b[Hab\tc\n\x1b[J");
    EXPECT_EQ(pageInPlace("ab\tc\n", {.columns = 8, .rows = 24}), "\x1b[Hab…\x1b[K\n\x1b[J");
}

TEST(TerminalPage, EndsWithASequenceThatHasNoEnd) {
    EXPECT_EQ(pageInPlace("\x1b[1\n", {.columns = 80, .rows = 24}), "\x1b[H\x1b[1\x1b[K\n\x1b[J");
}

TEST(TerminalPage, IsWholeOnATerminalOfUnknownSize) {
    EXPECT_EQ(pageInPlace("A long line\nB\n", {}), "\x1b[HA long line\x1b[K\nB\x1b[K\n\x1b[J");
}

} // namespace
} // namespace kelvinbar::terminal_page_test
