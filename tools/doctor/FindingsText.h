#pragma once

#include "base/Finding.h"

#include <span>
#include <string>
#include <string_view>

/// Findings as the programs print them. Pure functions; any thread.
namespace kelvinbar {

/// Of the document below. It changes when a field goes, gets another meaning or another type; further fields,
/// sections and subjects do not change it.
inline constexpr int findingsSchemaVersion = 1;

/// All findings of one run. The members are views.
struct FindingsReport {
    std::string_view program; ///< "kelvinbar 0.2.0"
    std::span<const FindingSection> sections;
};

/// For people: a line a finding, marked where something is wrong, with the advice below it.
std::string findingsText(const FindingsReport& report);

/// One JSON object; docs/console.md describes it.
std::string findingsJson(const FindingsReport& report);

} // namespace kelvinbar
