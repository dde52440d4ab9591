#include "tools/doctor/PersonalPaths.h"

#include "base/AddressMask.h"
#include "base/Text.h"

#include <array>
#include <cstddef>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace kelvinbar {

namespace {

/// The home folder, which usually contains the others, comes first: "~/.config" says more than
/// "$XDG_CONFIG_HOME".
constexpr std::array<std::pair<const char*, const char*>, 4> variables{{
    {"HOME", "~"},
    {"XDG_CONFIG_HOME", "$XDG_CONFIG_HOME"},
    {"XDG_DATA_HOME", "$XDG_DATA_HOME"},
    {"XDG_RUNTIME_DIR", "$XDG_RUNTIME_DIR"},
}};

/// Whether a name ends at `place`: "/home/jan" is not in "/home/jana".
bool endsHere(std::string_view text, std::size_t place) {
    if (place == text.size()) return true;
    const char next = text[place];
    const bool isAscii = static_cast<unsigned char>(next) < 0x80;
    return isAscii && !isAsciiAlphanumeric(next) && next != '.' && next != '_' && next != '-';
}

std::string withoutFolder(std::string_view text, const PersonalPath& path) {
    std::string result;
    std::size_t place = 0;
    for (std::size_t found = 0; (found = text.find(path.folder, place)) != std::string_view::npos;) {
        const std::size_t end = found + path.folder.size();
        result.append(text.substr(place, found - place));
        result.append(endsHere(text, end) ? std::string_view(path.standIn) : std::string_view(path.folder));
        place = end;
    }
    return result.append(text.substr(place));
}

std::vector<std::string*> textsOf(std::vector<FindingSection>& sections) {
    std::vector<std::string*> texts;
    for (FindingSection& section : sections) {
        for (Finding& finding : section.findings) {
            texts.insert(texts.end(), {&finding.subject, &finding.found, &finding.advice});
        }
    }
    return texts;
}

} // namespace

std::vector<PersonalPath> personalPaths() {
    std::vector<PersonalPath> paths;
    for (const auto& [name, standIn] : variables) {
        const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): nobody writes it
        std::string_view folder = value == nullptr ? "" : value;
        while (folder.ends_with('/')) folder.remove_suffix(1);
        if (folder.starts_with('/')) paths.push_back({std::string(folder), standIn});
    }
    return paths;
}

void hidePerson(std::vector<FindingSection>& sections, const std::vector<PersonalPath>& paths) {
    const std::vector<std::string*> texts = textsOf(sections);
    for (std::string* const text : texts) {
        for (const PersonalPath& path : paths) *text = withoutFolder(*text, path);
    }
    maskAddresses(texts);
}

} // namespace kelvinbar
