// Any parameter block through decoding and normalising. Input: four bytes of key, then the block.

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
    const SMCKeyResult result = dictionaryForKey(key, block);
    const bool usable = isPrintableSMCKey(key) && isReadableSize(block.dataSize);
    check(result.empty() != usable, "a result is empty exactly when key or size are unusable");
    if (result.empty()) return;

    const auto* value = result.find<std::string>("value");
    check(value != nullptr && !value->empty(), "every result has a value text");
    check(isValidUtf8(*value), "a value is text");
    check(result.textOr("raw", "").size() == std::size_t{2} * block.dataSize, "two digits a byte");

    const auto* number = result.find<double>("numericValue");
    check(number == nullptr || std::isfinite(*number), "a decoded number is finite");
    const auto numeric = numericValue(result.find("numericValue"));
    for (const char* unit : {"V", "A", "W", "RPM", "°C", ""}) {
        const NormalizedValue normalized = normalizeValue(key, *value, numeric, unit);
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
    // Sizes in range are rare among random ones.
    block.dataSize %= 33;
    kelvinbar::fuzz::decode("B0AV", block);
    return 0;
}
