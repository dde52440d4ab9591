// Any parameter block, through decoding and normalisation. Input: four bytes of key, then the block.

#include "base/Text.h"
#include "fuzz/Check.h"
#include "smc/SMCKeyText.h"
#include "smc/SMCValueDecoding.h"
#include "store/ValueNormalization.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace kelvinbar::fuzz {

namespace {

void decode(const std::string& key, const SMCParamBlock& block) {
    const auto reading = dictionaryForKey(key, block);
    const bool usable = isPrintableSMCKey(key) && isReadableSize(block.dataSize);
    check(reading.has_value() == usable, "there is no reading exactly when key or size are unusable");
    if (!reading) return;

    check(!reading->value.empty(), "every reading has a value text");
    check(isValidUtf8(reading->value), "a value is text");
    check(reading->raw.size() == std::size_t{2} * block.dataSize, "two digits a byte");
    check(std::isfinite(reading->numericValue.value_or(0)), "a decoded number is finite");
    const auto numeric = numericValue(reading->numericValue);
    for (const char* unit : {"V", "A", "W", "RPM", "°C", ""}) {
        const NormalizedValue normalized = normalizeValue(key, reading->value, numeric, unit);
        check(!normalized.value.empty(), "a normalised value has a text");
        check(!numeric || !contains(normalized.value, ","), "numbers have a decimal point");
        check(normalized.numeric.has_value() == numeric.has_value(), "a number stays one");
    }
}

} // namespace

} // namespace kelvinbar::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::array<std::uint8_t, 4 + sizeof(kelvinbar::SMCParamBlock)> input{};
    std::copy_n(data, std::min(size, input.size()), input.begin());
    kelvinbar::SMCParamBlock block;
    std::memcpy(&block, input.data() + 4, sizeof(block));
    const std::string key(input.begin(), input.begin() + 4);
    kelvinbar::fuzz::decode(key, block);
    // Valid sizes are rare among random ones.
    block.dataSize %= 33;
    kelvinbar::fuzz::decode("B0AV", block);
    return 0;
}
