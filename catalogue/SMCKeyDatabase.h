#pragma once

#include "catalogue/SMCKeyDefinition.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kelvinbar {

/// Hashes an SMC key by its packed bytes; accepts texts of any length.
struct SMCKeyHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view key) const noexcept;
};

/// The built-in catalogue of SMC keys: a fixed table, and rules that name further keys by their pattern.
/// Everything is built once, on first use, and read-only afterwards; callable from any thread.
class SMCKeyDatabase {
  public:
    using DefinitionMap = std::unordered_map<std::string, SMCKeyDefinition, SMCKeyHash, std::equal_to<>>;

    SMCKeyDatabase() = delete;

    /// The table, sorted by key in code-unit order, each key once.
    static const std::vector<SMCKeyDefinition>& definitions();

    /// The same entries by key.
    static const DefinitionMap& byKey();

    /// The keys of `definitions()`, in the same order.
    static const std::vector<std::string>& allKeys();

    /// The entry for `key`: the table's, otherwise that of the first naming rule that applies; nothing for a
    /// key that the catalogue cannot name.
    static std::optional<SMCKeyDefinition> hwMonitorDefinition(std::string_view key);
};

} // namespace kelvinbar
