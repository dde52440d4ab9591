#pragma once

#include "catalogue/SMCKeyDefinition.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// The catalogue of SMC keys. A controller lists its keys as four characters and says nothing about their
/// meaning; the catalogue adds name, category and unit.
///
/// It has two parts: a table of keys known by name (KnownKey.h), and rules that derive a name from the
/// conventions for keys (KeyNamingRules.h). The table takes precedence.
///
/// Limits: names are in English. A definition does not mean that the machine has the key, and says nothing
/// about the encoding of its value. A key can stand for different sensors on different machines; the
/// catalogue has one name for it.
///
/// Pitfalls: trailing spaces are part of a key ("REV "), and case matters ("IC0R" and "Ic0R" are two
/// sensors). Names are not unique. For a name to display, call hwMonitorDefinition(), not the table or a
/// rule.
namespace kelvinbar {

/// Hashes an SMC key by its packed bytes. Accepts texts of any length, but only the last four bytes count.
struct SMCKeyHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view key) const noexcept;
};

/// Access to the catalogue. The table is built on first use and constant afterwards. References stay valid
/// until the program ends. Any thread.
class SMCKeyDatabase {
  public:
    using DefinitionMap = std::unordered_map<std::string, SMCKeyDefinition, SMCKeyHash, std::equal_to<>>;

    SMCKeyDatabase() = delete;

    /// The entries of the table, sorted by key in code-unit order, each key once.
    static const std::vector<SMCKeyDefinition>& definitions();

    /// The same entries, for look-up by key. Does not apply the naming rules.
    static const DefinitionMap& byKey();

    /// The keys of `definitions()`, in the same order.
    static const std::vector<std::string>& allKeys();

    /// The definition of `key`: from the table, otherwise by the first naming rule that applies. No value if
    /// neither knows the key; every text that does not have four characters is such a key.
    static std::optional<SMCKeyDefinition> hwMonitorDefinition(std::string_view key);
};

} // namespace kelvinbar
