#include "tools/ShellCompletion.h"

#include <array>
#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::shell_completion_test {

namespace {

using testing::HasSubstr;
using testing::Not;

std::array<CompletedOption, 5> options() {
    return {CompletedOption{
                .names = {"-v", "--verbose"}, .help = "it's [more]: all", .valueName = {}, .values = {}},
            CompletedOption{
                .names = {"--format"}, .help = "how", .valueName = "NAME", .values = {"text", "json"}},
            CompletedOption{
                .names = {"--replay"}, .help = "what", .valueName = "FILE", .values = {}, .isFile = true},
            CompletedOption{
                .names = {"--key"}, .help = "which", .valueName = "KEY", .values = {}, .isRepeated = true},
            CompletedOption{.names = {"--kind"},
                            .help = "of",
                            .valueName = "NAME",
                            .values = {"fan", "heat"},
                            .isOptional = true,
                            .isRepeated = true}};
}

std::string script(std::string_view shell) { return completionScript(shell, "my-program", options()); }

TEST(BashCompletion, HasTheNamesAndTheValues) {
    EXPECT_THAT(script("bash"), HasSubstr("compgen -W '-v --verbose --format --replay --key --kind'"));
    EXPECT_THAT(script("bash"), HasSubstr("    --format) COMPREPLY=($(compgen -W 'text json'"));
    EXPECT_THAT(script("bash"), HasSubstr("\ncomplete -F _my_program my-program\n"));
}

TEST(BashCompletion, OffersNothingForAValueThatCannotBeListed) {
    EXPECT_THAT(script("bash"), HasSubstr("    --key) return ;;\n"));
    EXPECT_THAT(script("bash"), Not(HasSubstr("--verbose) ")));
}

TEST(ZshCompletion, EscapesTheHelp) {
    EXPECT_THAT(script("zsh"), HasSubstr(R"('--verbose[it'\''s \[more\]\: all]')"));
}

TEST(ZshCompletion, HasTheValuesAndTheFiles) {
    EXPECT_THAT(script("zsh"), HasSubstr("#compdef my-program\n"));
    EXPECT_THAT(script("zsh"), HasSubstr("'--format=[how]:NAME:(text json)'"));
    EXPECT_THAT(script("zsh"), HasSubstr("'--replay=[what]:FILE:_files'"));
    EXPECT_THAT(script("zsh"), HasSubstr("'*--key=[which]:KEY:()'"));
}

TEST(ZshCompletion, TellsOptionalAndFurtherValues) {
    EXPECT_THAT(script("zsh"), HasSubstr("'*--kind=[of]::NAME:(fan heat)'"));
    EXPECT_THAT(script("zsh"), HasSubstr("\n    --kind) compadd -- fan heat ;;\n  esac\n"));
    EXPECT_THAT(script("zsh"), HasSubstr(" '*: :_my_program_further_values'\n"));
    EXPECT_THAT(script("zsh"), Not(HasSubstr("--key)")));
}

TEST(FishCompletion, HasALineForEveryOption) {
    const std::string text = script("fish");
    EXPECT_EQ(text.substr(text.find("complete")),
              "complete -c my-program -f\n"
              "complete -c my-program -s v -l verbose -d 'it'\\''s [more]: all'\n"
              "complete -c my-program -l format -x -a 'text json' -d 'how'\n"
              "complete -c my-program -l replay -r -F -d 'what'\n"
              "complete -c my-program -l key -x -d 'which'\n"
              "complete -c my-program -l kind -x -a 'fan heat' -d 'of'\n"
              "complete -c my-program -n '__my_program_follows --kind' -a 'fan heat'\n");
}

} // namespace
} // namespace kelvinbar::shell_completion_test
