#include "base/Value.h"

#include <algorithm>

namespace kelvinbar {

std::optional<double> numberIn(const Value& value) {
    if (const auto* number = std::get_if<double>(&value)) return *number;
    if (const auto* number = std::get_if<std::int64_t>(&value)) return static_cast<double>(*number);
    return std::nullopt;
}

Dictionary::Dictionary(std::initializer_list<Entry> entries) {
    reserve(entries.size());
    for (const Entry& entry : entries) set(entry.first, entry.second);
}

void Dictionary::set(std::string_view key, Value value) {
    const auto found = std::ranges::find(entries_, key, &Entry::first);
    if (found == entries_.end()) {
        append(key, std::move(value));
    } else {
        found->second = std::move(value);
    }
}

const Value* Dictionary::find(std::string_view key) const {
    // Most keys of a dictionary differ in length or first letter. Checking these first is cheaper.
    const auto found = std::ranges::find_if(entries_, [key](const Entry& entry) {
        const std::string& name = entry.first;
        return name.size() == key.size() && (key.empty() || name.front() == key.front()) && name == key;
    });
    return found == entries_.end() ? nullptr : &found->second;
}

} // namespace kelvinbar
