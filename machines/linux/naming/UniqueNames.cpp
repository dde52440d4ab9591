#include "machines/linux/naming/UniqueNames.h"

#include "base/Text.h"
#include "machines/linux/naming/NameText.h"
#include "machines/linux/naming/SensorWords.h"

#include <algorithm>
#include <map>
#include <set>

namespace kelvinbar {

namespace {

/// The name, a separator and a word; the name is cut where all of it would be too long.
std::string withSuffix(std::string_view name, std::string_view separator, std::string_view word) {
    const std::size_t room = longestSensorName - characterCount(separator) - characterCount(word);
    return cutText(name, room).append(separator).append(word);
}

using Group = std::vector<NameInList>;

/// Readings by name; each group keeps their order.
std::map<std::string, Group> groupedByName(const std::vector<NameInList>& names) {
    std::map<std::string, Group> groups;
    for (const NameInList& channel : names) groups[*channel.name].push_back(channel);
    return groups;
}

void appendKind(const NameInList& channel) {
    std::string& name = *channel.name;
    const std::string kind(kindWords(channel.kind));
    if (!contains(asciiLowercased(name), asciiLowercased(kind))) name = withSuffix(name, " ", kind);
}

/// On some boards, "CPU" is the label of a temperature and of a current.
void tellKindsApart(const std::vector<NameInList>& names) {
    for (const auto& [name, group] : groupedByName(names)) {
        const auto ofOneKind = std::ranges::count(group, group.front().kind, &NameInList::kind);
        if (static_cast<std::size_t>(ofOneKind) < group.size()) std::ranges::for_each(group, appendKind);
    }
}

/// The first free name of: name and number, unless the name ends in a digit; name and chip, if it fits; name
/// and marked number.
std::string freeName(const NameInList& reading, int number, const std::set<std::string>& taken) {
    const std::string& name = *reading.name;
    std::string candidate = withSuffix(name, " ", std::to_string(number));
    if (!isDecimalDigit(name.back()) && !taken.contains(candidate)) return candidate;
    candidate = std::string(name).append(" (").append(reading.type).append(")");
    while (characterCount(candidate) > longestSensorName || taken.contains(candidate)) {
        candidate = withSuffix(name, " #", std::to_string(number++));
    }
    return candidate;
}

} // namespace

void makeUnique(const std::vector<NameInList>& names) {
    tellKindsApart(names);
    const auto groups = groupedByName(names);
    std::set<std::string> taken;
    for (const auto& [name, group] : groups) taken.insert(name);
    for (const auto& [name, group] : groups) {
        for (std::size_t index = 1; index < group.size(); ++index) {
            const NameInList& reading = group[index];
            *reading.name = freeName(reading, static_cast<int>(index) + 1, taken);
            taken.insert(*reading.name);
        }
    }
}

} // namespace kelvinbar
