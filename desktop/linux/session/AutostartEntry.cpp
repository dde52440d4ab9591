#include "desktop/linux/session/AutostartEntry.h"

#include "desktop/linux/files/RegularFile.h"
#include "desktop/linux/session/DesktopEntry.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <fcntl.h>
#include <system_error>
#include <utility>

#include <unistd.h>

namespace kelvinbar {

namespace {

namespace fs = std::filesystem;

/// Some desktops disable an entry with their own key instead of Hidden.
constexpr std::array<std::string_view, 2> enablingKeys{"X-GNOME-Autostart-enabled",
                                                       "X-MATE-Autostart-enabled"};

/// Mandatory keys of a desktop entry. Added to an entry that lacks them.
constexpr std::array<std::pair<std::string_view, std::string_view>, 2> requiredValues{{
    {"Name", "Kelvinbar"},
    {"Type", "Application"},
}};

constexpr std::string_view newEntry = "[Desktop Entry]\nType=Application\nName=Kelvinbar\n"
                                      "Comment=Sensor readings in the panel\nIcon=kelvinbar\n";

/// Replaces the content of `file` atomically.
bool replaceFile(const fs::path& file, const std::string& text) {
    fs::path temporary = file;
    temporary += ".new";
    std::error_code error;
    fs::remove(temporary, error); // may be a link or a pipe
    const int descriptor = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (descriptor < 0) return false;
    const bool isWritten =
        ::write(descriptor, text.data(), text.size()) == static_cast<ssize_t>(text.size()) &&
        ::fsync(descriptor) == 0;
    ::close(descriptor);
    if (isWritten) fs::rename(temporary, file, error);
    const bool isReplaced = isWritten && !error;
    if (!isReplaced) fs::remove(temporary, error);
    return isReplaced;
}

/// The content of `file`. No value if it cannot be read or is too large for a desktop entry.
std::optional<std::string> contentOf(const fs::path& file) {
    constexpr std::size_t limit = std::size_t{64} * 1024;
    return regularContent(file, limit);
}

bool isProgram(const fs::path& file) {
    std::error_code error;
    return fs::is_regular_file(file, error) && ::access(file.c_str(), X_OK) == 0;
}

/// The program that a desktop starts for `word`, a path or a name to look for in `path`, the value of PATH.
std::optional<fs::path> foundProgram(const std::string& word, const std::string& path) {
    if (word.find('/') != std::string::npos) {
        return isProgram(word) ? std::optional<fs::path>(word) : std::nullopt;
    }
    std::istringstream folders(path);
    for (std::string folder; !word.empty() && std::getline(folders, folder, ':');) {
        if (folder.starts_with('/') && isProgram(fs::path(folder) / word)) return fs::path(folder) / word;
    }
    return std::nullopt;
}

/// The word that names the program. "env" and the variables that it sets may come before it.
auto programIn(std::vector<std::string>& words) {
    if (words.empty() || fs::path(words.front()).filename() != "env") return words.begin();
    return std::find_if(words.begin() + 1, words.end(),
                        [](const std::string& word) { return word.find('=') == std::string::npos; });
}

bool isSwitchedOff(const EntryLines& lines) {
    return entryValue(lines, "Hidden") == "true" ||
           std::ranges::any_of(enablingKeys,
                               [&](std::string_view key) { return entryValue(lines, key) == "false"; });
}

} // namespace

AutostartEntry::AutostartEntry(const fs::path& folder, const std::string& name,
                               std::vector<std::string> command, Surroundings surroundings, Report report)
    : file_(folder / (name + ".desktop"))
    , command_(std::move(command))
    , surroundings_(std::move(surroundings))
    , report_(std::move(report)) {}

bool AutostartEntry::isRegistered() const {
    const auto text = contentOf(file_);
    return text && starts(entryLines(*text));
}

/// Whether the desktop would start this program for the entry.
bool AutostartEntry::starts(const EntryLines& lines) const {
    auto words = commandOfExecValue(entryValue(lines, "Exec").value_or(""));
    const auto program = programIn(words);
    return program != words.end() && isThisProgram(*program) && !isSwitchedOff(lines) &&
           isTryExecMet(lines) && isShownIn(lines, surroundings_.desktopNames);
}

bool AutostartEntry::isThisProgram(const std::string& word) const {
    const auto found = foundProgram(word, surroundings_.path);
    std::error_code error;
    return found && fs::equivalent(*found, command_.front(), error);
}

/// Whether the entry's condition that a program is installed holds.
bool AutostartEntry::isTryExecMet(const EntryLines& lines) const {
    const auto condition = entryValue(lines, "TryExec");
    return !condition || foundProgram(unescapedEntryValue(*condition), surroundings_.path);
}

std::string AutostartEntry::programName() const { return fs::path(command_.front()).filename(); }

std::string AutostartEntry::programWord() const {
    return isThisProgram(programName()) ? programName() : command_.front();
}

/// The program as PATH leads to it. Links on the way stay, which an upgrade redirects. A session that starts
/// the entry may have a shorter PATH, so the name alone is not enough.
std::string AutostartEntry::programPath() const {
    const auto found = foundProgram(programName(), surroundings_.path);
    return found && isThisProgram(*found) ? found->string() : command_.front();
}

bool AutostartEntry::registerItem() {
    std::error_code error;
    fs::create_directories(file_.parent_path(), error);
    const auto text = contentOf(file_);
    if (kindOf(file_) != FileKind::missing && !text) {
        return reported(LogLevel::error, "cannot be read in full and is left as it is");
    }
    return write(enabled(entryLines(text.value_or(std::string(newEntry)))));
}

bool AutostartEntry::write(const EntryLines& lines) const {
    const auto target = replaceableFile(file_);
    if (!target || !replaceFile(*target, entryText(lines)))
        return reported(LogLevel::error, "cannot be written");
    return reported(LogLevel::info, "is written");
}

/// Returns false if `level` is error, so that the caller can report and return in one statement.
bool AutostartEntry::reported(LogLevel level, const char* what) const {
    report_(level, "the autostart entry " + file_.string() + " " + what);
    return level != LogLevel::error;
}

/// `lines` so that the desktop starts this program for them.
EntryLines AutostartEntry::enabled(EntryLines lines) const {
    for (const auto& [key, value] : requiredValues) {
        if (!entryValue(lines, key)) lines = withEntryValue(lines, key, value);
    }
    auto command = command_;
    command.front() = programPath();
    lines = withEntryValue(lines, "Exec", desktopExecValue(command));
    lines = withEntryValue(lines, "Hidden", "false");
    for (const std::string_view key : enablingKeys) {
        if (entryValue(lines, key)) lines = withEntryValue(lines, key, "true");
    }
    if (!isTryExecMet(lines)) lines = withoutEntryValue(lines, "TryExec");
    if (isShownIn(lines, surroundings_.desktopNames)) return lines;
    return withoutEntryValue(withoutEntryValue(lines, "OnlyShowIn"), "NotShowIn");
}

void AutostartEntry::renew() {
    const auto text = contentOf(file_);
    if (!text) return;
    EntryLines lines = entryLines(*text);
    auto words = commandOfExecValue(entryValue(lines, "Exec").value_or(""));
    const auto program = programIn(words);
    if (program == words.end() || !isStale(*program) || isSwitchedOff(lines)) return;
    *program = programPath();
    lines = withEntryValue(lines, "Exec", desktopExecValue(words));
    if (!isTryExecMet(lines)) lines = withoutEntryValue(lines, "TryExec");
    static_cast<void>(write(lines)); // a failure is reported
}

/// Other programs in an entry, such as a shell, are the user's own choice. So is another copy of this one.
bool AutostartEntry::isStale(const std::string& word) const {
    return fs::path(word).filename() == programName() && !foundProgram(word, surroundings_.path);
}

bool AutostartEntry::unregisterItem() {
    std::error_code error;
    if (kindOf(file_) == FileKind::other) return reported(LogLevel::error, "is no file and is left as it is");
    // A link belongs to whoever keeps its target, and would be missed.
    if (const auto text = contentOf(file_); text && fs::is_symlink(file_, error)) {
        return write(withEntryValue(entryLines(*text), "Hidden", "true"));
    }
    fs::remove(file_, error);
    return error ? reported(LogLevel::error, "cannot be removed") : reported(LogLevel::info, "is removed");
}

fs::path userAutostartFolder() {
    const char* const config =
        std::getenv("XDG_CONFIG_HOME"); // NOLINT(concurrency-mt-unsafe): nobody writes it
    if (config != nullptr && *config == '/') return fs::path(config) / "autostart";
    const char* const home = std::getenv("HOME"); // NOLINT(concurrency-mt-unsafe)
    return fs::path(home == nullptr ? "/" : home) / ".config/autostart";
}

} // namespace kelvinbar
