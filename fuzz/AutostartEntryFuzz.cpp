// Any text as the autostart entry, and as a command in one.

#include "desktop/linux/session/AutostartEntry.h"
#include "desktop/linux/session/DesktopEntry.h"
#include "fuzz/Check.h"
#include "fuzz/InputText.h"
#include "tests/machines/linux/TemporaryTree.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar::fuzz {

namespace {

void checkEntry(std::string_view text) {
    const EntryLines lines = entryLines(text);
    check(entryLines(entryText(lines)) == lines, "the text of lines has these lines");
    const EntryLines changed = withEntryValue(lines, "Exec", "a b");
    check(entryValue(changed, "Exec") == "a b", "a value that is set is there");
    check(!entryValue(withoutEntryValue(changed, "Exec"), "Exec"), "a value that is removed is gone");
    check(unescapedEntryValue(text).size() <= text.size(), "escapes are no shorter than what they mean");
    static_cast<void>(isShownIn(lines, "Test:GNOME"));
}

void checkCommand(std::string_view text) {
    static_cast<void>(commandOfExecValue(text));
    std::vector<std::string> command;
    for (const std::string_view word : parts(text, '\n', 8)) command.emplace_back(word);
    check(commandOfExecValue(desktopExecValue(command)) == command, "a command survives its quotation");
}

void registerOver(std::string_view text) {
    constexpr const char* name = "org.kelvinbar.Kelvinbar";
    fakes::TemporaryTree tree;
    tree.write(std::string(name) + ".desktop", text);
    const std::filesystem::path program = tree.write("kelvinbar", "");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    AutostartEntry entry(tree.root(), name, {program.string(), "--autostart"},
                         {.path = "/usr/bin", .desktopNames = "Test"}, [](LogLevel, const std::string&) {});
    const bool wasRegistered = entry.isRegistered();
    entry.renew();
    check(!wasRegistered || entry.isRegistered(), "renewing leaves an entry that starts the program");
    check(entry.registerItem() && entry.isRegistered(), "any entry can be made to start the program");
    check(entry.unregisterItem() && !entry.isRegistered(), "any entry can be switched off");
}

} // namespace

} // namespace kelvinbar::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = kelvinbar::fuzz::inputText({data, size});
    kelvinbar::fuzz::checkEntry(text);
    kelvinbar::fuzz::checkCommand(text);
    kelvinbar::fuzz::registerOver(text);
    return 0;
}
