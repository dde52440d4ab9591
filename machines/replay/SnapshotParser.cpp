#include "machines/replay/SnapshotParser.h"

#include "base/Calendar.h"
#include "base/NumberText.h"
#include "base/Text.h"
#include "catalogue/SMCCategory.h"
#include "catalogue/SMCKeyDatabase.h"
#include "machines/linux/naming/SensorMeaning.h"
#include "smc/NativeMacSupport.h"
#include "smc/SMCKeyText.h"
#include "store/SnapshotExport.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace kelvinbar {

namespace {

constexpr std::size_t maximumBytes = 32;
constexpr double maximumFanSpeed = 30000; // RPM

/// A line's fields. Name and value may contain tabs, so fields are taken from both ends.
struct Fields {
    std::string_view key;
    std::string_view type;
    std::string_view name;
    std::string_view value;
    std::string_view raw;
};

/// Returns the text before the first `separator` and removes both from `rest`. Without a separator, returns
/// all of it.
std::string_view takeUntil(std::string_view& rest, char separator) {
    const std::size_t end = std::min(rest.find(separator), rest.size());
    const std::string_view part = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return part;
}

std::optional<Fields> splitFields(std::string_view line) {
    constexpr std::string_view marker = "\tRAW=";
    const std::size_t markerAt = line.rfind(marker);
    if (markerAt == std::string_view::npos) return std::nullopt;
    Fields fields;
    fields.raw = line.substr(markerAt + marker.size());
    std::string_view rest = line.substr(0, markerAt);
    if (!contains(rest, "\t")) return std::nullopt; // no type
    fields.key = takeUntil(rest, '\t');
    fields.type = takeUntil(rest, '\t');
    const std::size_t valueTab = rest.rfind('\t');
    fields.name = rest.substr(0, std::min(valueTab, rest.size()));
    fields.value = valueTab == std::string_view::npos ? std::string_view() : rest.substr(valueTab + 1);
    return fields;
}

/// A value that ends with its unit is shown without another one, and would not be replayed to the same text.
std::string_view withoutUnit(std::string_view value, std::string_view unit) {
    while (!unit.empty() && value.ends_with(unit))
        value = trimmed(value.substr(0, value.size() - unit.size()));
    return value;
}

/// "8" or "8.0".
std::optional<int> coreCount(std::string_view text) {
    const auto count = wholeNumberIn<int>(text.ends_with(".0") ? text.substr(0, text.size() - 2) : text);
    return count && *count > 0 ? count : std::nullopt;
}

constexpr std::string_view timeHeading = "Generated:";

bool isHeaderLine(std::string_view line) {
    return line.starts_with(timeHeading) || line.starts_with("Active keys:");
}

/// Removes the rest of a CR LF line ending; the line feed has been removed already.
std::string_view withoutCarriageReturns(std::string_view line) {
    while (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

/// The text after the title line, and the number of its first line. The whole text if there is no title.
std::pair<std::string_view, std::size_t> afterTitle(std::string_view text) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
    std::string_view rest = text;
    for (std::size_t number = 2; !rest.empty(); ++number) {
        if (trimmed(takeUntil(rest, '\n')) == snapshotTitle) return {rest, number};
    }
    return {text, 1};
}

/// Builds the recorded machine line by line. Each `take…` returns the reason why it cannot use the line;
/// empty on success.
class Recorder {
  public:
    void take(std::string_view line, std::size_t lineNumber) {
        const std::string_view reason = takeLine(line);
        if (reason.empty()) {
            ++parsed_.machine.usedLines;
        } else {
            parsed_.problems.push_back({lineNumber, reason});
        }
    }

    /// The first time counts.
    void takeHeader(std::string_view line) {
        auto& time = parsed_.machine.time;
        if (time || !line.starts_with(timeHeading)) return;
        time = timeOfIso8601Text(trimmed(line.substr(timeHeading.size())));
    }

    ParsedSnapshot finish() && { return std::move(parsed_); }

  private:
    std::string_view takeLine(std::string_view line) {
        const auto fields = splitFields(line);
        if (!fields) return "not a reading (key, type, name, value and RAW=, separated by tabs)";
        const bool isText = isSensorKey(fields->key) || fields->type == "ioreg" || fields->type == nativeType;
        if (isText && !isValidUtf8(line)) return "the line is not well-formed UTF-8";
        if (isSensorKey(fields->key)) return takeSensor(*fields);
        if (!isPrintableSMCKey(fields->key)) return "the key is not four printable characters";
        if (fields->type == "ioreg") return takeFan(*fields);
        if (fields->type == nativeType) return takeFact(*fields);
        return takeKey(*fields);
    }

    std::string_view takeKey(const Fields& fields) {
        if (fields.type.size() > 4) return "the type is longer than four characters";
        auto bytes = bytesOfHexString(trimmed(fields.raw));
        if (!bytes) return "the bytes after RAW= are not pairs of hex digits";
        if (bytes->empty()) return "there are no bytes after RAW=";
        if (bytes->size() > maximumBytes) return "there are more than 32 bytes after RAW=";
        const std::uint32_t code = packedSMCKey(fields.key);
        if (!seenKeys_.insert(code).second) return repeatedKey;
        std::string type(fields.type);
        type.resize(4, '\0');
        parsed_.machine.keys.push_back({code, packedSMCKey(type), *std::move(bytes)});
        return {};
    }

    std::string_view takeFan(const Fields& fields) {
        std::string_view speed = trimmed(fields.value);
        if (speed.ends_with("RPM")) speed = trimmed(speed.substr(0, speed.size() - 3));
        if (!isNumber(speed)) return "the fan has no speed";
        if (const double number = leadingNumber(speed); number < 0 || number > maximumFanSpeed) {
            return "the fan's speed is not from 0 to 30000";
        }
        if (fields.name.empty()) return "the fan has no name";
        if (!SMCKeyDatabase::hwMonitorDefinition(fields.key)) return "no fan has this key";
        if (!seenFans_.insert(packedSMCKey(fields.key)).second) return repeatedKey;
        parsed_.machine.fans.push_back(fanReading(fields, speed));
        return {};
    }

    static RawReading fanReading(const Fields& fields, std::string_view speed) {
        return {.key = std::string(fields.key),
                .type = std::string(fields.type),
                .value = std::string(speed),
                .numericValue = leadingNumber(speed),
                .raw = std::string(fields.raw),
                .name = std::string(fields.name),
                .category = std::string(rawValue(SMCCategory::fans)),
                .unit = "RPM"};
    }

    std::string_view takeSensor(const Fields& fields) {
        if (fields.name.empty()) return "the sensor has no name";
        std::string_view value = trimmed(fields.value);
        const auto meaning = meaningOfLine(fields.key, fields.type, fields.name, value);
        if (!meaning) return "no sensor has this key";
        value = withoutUnit(value, meaning->unit);
        if (value.empty()) return "the sensor has no value";
        if (!seenSensors_.emplace(fields.key).second) return repeatedKey;
        parsed_.machine.sensors.push_back(
            {.key = std::string(fields.key),
             .type = std::string(fields.type),
             .value = std::string(value),
             .numericValue = isNumber(value) ? std::optional(leadingNumber(value)) : std::nullopt,
             .raw = std::string(fields.raw),
             .name = std::string(fields.name),
             .category = std::string(rawValue(meaning->category)),
             .unit = meaning->unit});
        return {};
    }

    std::string_view takeFact(const Fields& fields) {
        const std::uint32_t code = packedSMCKey(fields.key);
        if (seenFacts_.contains(code)) return repeatedKey;
        const std::string_view problem =
            takeFact(fields.key, trimmed(fields.raw.empty() ? fields.value : fields.raw));
        const bool isThermalState = problem.empty() && fields.key == "NTHR" && !fields.name.empty();
        if (isThermalState) parsed_.machine.facts.thermalStateName = fields.name;
        if (problem.empty()) seenFacts_.insert(code);
        return problem;
    }

    std::string_view takeFact(std::string_view key, std::string_view value) {
        RecordedFacts& facts = parsed_.machine.facts;
        if (key == "NCPU") {
            if (value.empty()) return "the processor has no name";
            facts.processorModel = value;
        } else if (key == "NCOR") {
            facts.activeProcessors = coreCount(value);
            if (!facts.activeProcessors) return "the number of cores is not a whole number above 0";
        } else if (key == "NRAM") {
            facts.physicalMemory = wholeNumberIn<std::uint64_t>(value);
            if (!facts.physicalMemory) return "the memory after RAW= is not a whole number of bytes";
        } else if (key == "NTHR") {
            facts.thermalState = thermalStateNamed(value);
            if (!facts.thermalState) return "there is no such thermal state";
        } else if (key == "NLPM") {
            if (value != "Enabled" && value != "Disabled") return "not Enabled or Disabled";
            facts.lowPowerMode = value == "Enabled";
        } else if (key == "NARC") {
            facts.architecture = value;
        } else {
            return "no system fact has this key";
        }
        return {};
    }

    ParsedSnapshot parsed_;
    std::unordered_set<std::uint32_t> seenKeys_;
    std::unordered_set<std::string> seenSensors_;
    std::unordered_set<std::uint32_t> seenFans_;
    std::unordered_set<std::uint32_t> seenFacts_;
};

} // namespace

ParsedSnapshot parseSnapshot(std::string_view text) {
    Recorder recorder;
    auto [rest, lineNumber] = afterTitle(text);
    for (; !rest.empty(); ++lineNumber) {
        const std::string_view line = withoutCarriageReturns(takeUntil(rest, '\n'));
        if (isHeaderLine(line)) {
            recorder.takeHeader(line);
        } else if (!trimmed(line).empty()) {
            recorder.take(line, lineNumber);
        }
    }
    return std::move(recorder).finish();
}

} // namespace kelvinbar
