#include "catalogue/SMCKeyDatabase.h"

#include "catalogue/Hashing.h"
#include "catalogue/KeyNamingRules.h"
#include "catalogue/KeyTable.h"

namespace kelvinbar {

std::size_t SMCKeyHash::operator()(std::string_view key) const noexcept {
    std::uint32_t packed = 0;
    for (const char byte : key) packed = (packed << 8U) | static_cast<unsigned char>(byte);
    // Knuth's multiplicative hashing: keys differ in few bits, and the product spreads these over the word.
    const std::uint32_t spread = packed * 2654435769U;
    return spread;
}

const std::vector<SMCKeyDefinition>& SMCKeyDatabase::definitions() {
    static const std::vector<SMCKeyDefinition> table = makeDefinitions();
    return table;
}

const SMCKeyDatabase::DefinitionMap& SMCKeyDatabase::byKey() {
    static const DefinitionMap map = [] {
        DefinitionMap entries;
        entries.reserve(definitions().size());
        for (const SMCKeyDefinition& definition : definitions()) entries.emplace(definition.key, definition);
        return entries;
    }();
    return map;
}

const std::vector<std::string>& SMCKeyDatabase::allKeys() {
    static const std::vector<std::string> keys = [] {
        std::vector<std::string> list;
        list.reserve(definitions().size());
        for (const SMCKeyDefinition& definition : definitions()) list.push_back(definition.key);
        return list;
    }();
    return keys;
}

std::optional<SMCKeyDefinition> SMCKeyDatabase::hwMonitorDefinition(std::string_view key) {
    const auto found = byKey().find(key);
    return found != byKey().end() ? found->second : definitionByPattern(key);
}

} // namespace kelvinbar

std::size_t std::hash<kelvinbar::SMCKeyDefinition>::operator()(
    const kelvinbar::SMCKeyDefinition& definition) const noexcept {
    const std::hash<std::string_view> text;
    return kelvinbar::combinedHash({text(definition.key), text(definition.name),
                                    text(rawValue(definition.category)), text(definition.unit)});
}
