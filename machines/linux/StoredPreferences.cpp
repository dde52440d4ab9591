#include "machines/linux/StoredPreferences.h"

#include "base/Text.h"
#include "machines/Platform.h"
#include "machines/linux/files/FileStamp.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <ios>
#include <system_error>
#include <utility>

namespace kelvinbar {

namespace {

/// In bytes. Larger than any preferences.
constexpr std::size_t largestPreferences = std::size_t{1} << 20U;

std::string_view takeLine(std::string_view& rest) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    const std::string_view line = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return line;
}

/// Splits a value into its elements: separated by commas, perhaps in quotes, with C's escapes.
class ValueReader {
  public:
    explicit ValueReader(std::string_view value) : rest_(value) {}

    TextList elements() {
        while (!rest_.empty()) takeCharacter();
        finishElement();
        return std::move(elements_);
    }

  private:
    void takeCharacter() {
        const char character = take();
        if (character == '\\') {
            takeEscape();
        } else if (character == '"') {
            isQuoted_ = !isQuoted_;
            kept_ = element_.size();
        } else if (character == ',' && !isQuoted_) {
            finishElement();
        } else if (character != ' ' || isQuoted_ || !element_.empty()) {
            add(character, isQuoted_ || character != ' ');
        }
    }

    void takeEscape() {
        const char character = rest_.empty() ? '\\' : take();
        if (character == 'x') {
            add(hexadecimalCharacter(), true);
        } else {
            add(character == 'n' ? '\n' : character == 't' ? '\t' : character, true);
        }
    }

    /// Keys are ASCII; another character makes the key one that no sensor has.
    char hexadecimalCharacter() {
        unsigned code = 0;
        while (!rest_.empty() && hexDigitValue(rest_.front()) >= 0) {
            code = (code * 16 + static_cast<unsigned>(hexDigitValue(take()))) & 0xFFFFU;
        }
        return code < 0x80 ? static_cast<char>(code) : '?';
    }

    char take() {
        const char character = rest_.front();
        rest_.remove_prefix(1);
        return character;
    }

    /// Spaces outside quotes are kept between others only.
    void add(char character, bool isKept) {
        element_.push_back(character);
        if (isKept) kept_ = element_.size();
    }

    void finishElement() {
        element_.resize(kept_);
        if (element_.starts_with("@@")) element_.erase(0, 1); // how a text begins that has one "@"
        elements_.push_back(std::exchange(element_, {}));
        kept_ = 0;
    }

    std::string_view rest_;
    TextList elements_;
    std::string element_;
    std::size_t kept_ = 0; ///< characters of the element that are not spaces at its end
    bool isQuoted_ = false;
};

/// Of numbers with a type, sizes and so on: "@Size(4 5)".
bool hasOtherType(std::string_view value) { return value.starts_with('@') && !value.starts_with("@@"); }

std::string environmentValue(const char* name) {
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): nobody writes it
    return value == nullptr ? std::string() : std::string(value);
}

} // namespace

Dictionary preferenceListsIn(std::string_view text) {
    Dictionary lists;
    bool isFirstSection = true;
    while (!text.empty()) {
        const std::string_view line = trimmed(takeLine(text));
        if (line.starts_with('[')) isFirstSection = line == "[General]";
        const std::size_t equals = line.find('=');
        if (!isFirstSection || line.starts_with(';') || equals == std::string_view::npos) continue;
        const std::string_view value = line.substr(equals + 1);
        if (!hasOtherType(value)) lists.set(line.substr(0, equals), ValueReader(value).elements());
    }
    return lists;
}

std::string preferencesFile() {
    std::string folder = environmentValue("XDG_CONFIG_HOME");
    if (folder.starts_with('/')) return folder + "/kelvinbar/kelvinbar.conf";
    folder = environmentValue("HOME");
    return folder.empty() ? std::string() : folder + "/.config/kelvinbar/kelvinbar.conf";
}

std::optional<Dictionary> storedPreferenceLists() {
    const std::string path = preferencesFile();
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(path, ignored)) return Dictionary(); // a pipe would block
    std::ifstream file(path, std::ios::binary);
    std::string text(largestPreferences, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(file.gcount()));
    return preferenceListsIn(text);
}

std::string storedPreferencesStamp() { return fileStamp(preferencesFile()); }

} // namespace kelvinbar
