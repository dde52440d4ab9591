#pragma once

#include "tools/OutputFormats.h"

namespace kelvinbar {

/// Of the documents below. It changes when a field goes, gets another meaning or another type; further fields
/// do not change it. docs/snapshot.schema.json describes them.
inline constexpr int jsonSchemaVersion = 1;

/// One object with an array of readings, indented.
ReportWriter makeJsonWriter(const FormatSettings& settings);

/// The same object on one line.
ReportWriter makeJsonLineWriter(const FormatSettings& settings);

} // namespace kelvinbar
