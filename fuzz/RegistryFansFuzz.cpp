// Any registry. Input: a line "e|CLASS|NAME|MODEL" for each entry, and after it a line for each property: its
// type, its name and its value, as in "i|fan-speed|1200", with b (boolean), i (whole number), f (floating
// point), t (text) or d (data).

#include "base/Text.h"
#include "fuzz/Check.h"
#include "fuzz/InputText.h"
#include "fuzz/StandingClock.h"
#include "smc/RegistryFans.h"
#include "tests/fakes/FakeIORegistry.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar::fuzz {

namespace {

constexpr std::size_t mostLines = 128;

std::int64_t wholeNumber(const std::string& text) { return std::strtoll(text.c_str(), nullptr, 0); }

/// The bits of a whole number, or what the text says: not a number and infinities are among both.
double floatingPoint(const std::string& text) {
    if (!text.starts_with('x')) return std::strtod(text.c_str(), nullptr);
    const std::int64_t bits = wholeNumber("0" + text);
    double number = 0;
    std::memcpy(&number, &bits, sizeof(number));
    return number;
}

Value valueOf(std::string_view type, const std::string& text) {
    if (type == "b") return text == "1";
    if (type == "i") return wholeNumber(text);
    if (type == "f") return floatingPoint(text);
    if (type == "d") return Data(text.begin(), text.end());
    return text;
}

std::shared_ptr<IORegistry> registryOf(std::string_view input) {
    auto registry = std::make_shared<fakes::FakeIORegistry>();
    for (const std::string_view line : parts(input, '\n', mostLines)) {
        const auto fields = parts(line, '|', 4);
        if (fields.front() == "e") {
            Dictionary properties;
            properties.append("model", std::string(field(fields, 3)));
            registry->add(std::string(field(fields, 1)), std::string(field(fields, 2)), properties);
        } else if (!registry->entries.empty()) {
            registry->entries.back().entryProperties->set(
                field(fields, 1), valueOf(fields.front(), std::string(field(fields, 2))));
        }
    }
    return registry;
}

void readFans(std::string_view input) {
    RegistryFans fans(registryOf(input), std::make_shared<StandingClock>());
    const std::vector<RawReading> readings = fans.read();
    check(readings.size() < 16 + mostLines, "at most sixteen fans, and what is left of the last entry");
    for (const RawReading& reading : readings) {
        const double speed = reading.numericValue.value_or(0);
        check(std::isfinite(speed) && speed >= 0 && speed <= 30000, "a speed is one of a fan");
        check(reading.key.size() == 4 && reading.name && !reading.name->empty(), "a fan has key and name");
    }
    check(fans.read() == readings, "the cache holds what was read");
}

} // namespace

} // namespace kelvinbar::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kelvinbar::fuzz::readFans(kelvinbar::fuzz::inputText({data, size}));
    return 0;
}
