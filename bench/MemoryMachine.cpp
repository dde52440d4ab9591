#include "bench/MemoryMachine.h"

#include "catalogue/SMCKeyDatabase.h"
#include "smc/SMCBridge.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <set>

namespace kelvinbar::bench {

namespace {

class EmptyRegistry final : public IORegistry {
    class NoEntries final : public IORegistryIterator {
        const IORegistryEntry* next() override { return nullptr; }
    };

  public:
    std::unique_ptr<IORegistryIterator> iterateRecursively(std::string_view /*plane*/) override {
        return std::make_unique<NoEntries>();
    }
};

/// The mix of types on real machines, with bytes that decode to plausible values.
struct SampleValue {
    std::string_view type;
    std::vector<std::uint8_t> bytes;
};

const std::vector<SampleValue>& sampleValues() {
    static const std::vector<SampleValue> values{
        {"sp78", {0x2D, 0x80}}, {"flt ", {0x33, 0x33, 0x3D, 0x42}},
        {"ui16", {0x2D, 0x42}}, {"fpe2", {0x13, 0x89}},
        {"ui8 ", {0x02}},       {"ui32", {0x00, 0x01, 0x02, 0x03}},
        {"si16", {0xF8, 0x40}}, {"ch8*", {0x6A, 0x31, 0x33, 0x38, 0x00, 0x00, 0x00, 0x00}},
    };
    return values;
}

} // namespace

std::vector<std::string> namedKeys(std::size_t count) {
    constexpr std::string_view letters = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    constexpr std::array<std::string_view, 4> families{"V", "I", "B", "TG0"};
    std::set<std::string> keys;
    for (const std::string& key : SMCKeyDatabase::allKeys()) {
        if (keys.size() < count / 2) keys.insert(key);
    }
    for (std::size_t number = 0; keys.size() < count; ++number) {
        std::string key(families.at(number % families.size()));
        for (std::size_t rest = number / families.size(); key.size() < 4; rest /= letters.size()) {
            key.push_back(letters[rest % letters.size()]);
        }
        keys.insert(key);
    }
    return {keys.begin(), keys.end()};
}

MemoryDriver::MemoryDriver(const std::vector<std::string>& keys) {
    const auto addKey = [&](std::string_view name, std::string_view type,
                            const std::vector<std::uint8_t>& bytes) {
        Answers answers;
        answers.info.dataSize = static_cast<std::uint32_t>(bytes.size());
        answers.info.dataType = packedSMCKey(type);
        std::ranges::copy(bytes, answers.bytes.bytes.begin());
        byKey_.emplace(packedSMCKey(name), answers);
    };
    const auto count = static_cast<std::uint32_t>(keys.size());
    addKey("#KEY", "ui32", {0, 0, static_cast<std::uint8_t>(count >> 8U), static_cast<std::uint8_t>(count)});
    for (std::size_t index = 0; index < keys.size(); ++index) {
        const SampleValue& value = sampleValues()[index % sampleValues().size()];
        addKey(keys[index], value.type, value.bytes);
        byIndex_.emplace_back().key = packedSMCKey(keys[index]);
    }
}

void MemoryDriver::changeValue(std::string_view key) {
    // A significant byte: the first, except for floating-point numbers, which are little-endian.
    auto& answers = byKey_.find(packedSMCKey(key))->second;
    const bool isFloat = answers.info.dataType == packedSMCKey("flt ");
    answers.bytes.bytes.at(isFloat ? 2 : 0) ^= 0x10U;
}

ReturnCode MemoryDriver::callStructMethod(Connection /*connection*/, std::uint32_t /*selector*/,
                                          std::span<const std::byte> input, std::span<std::byte> output,
                                          std::size_t& /*outputSize*/) {
    SMCParamBlock question;
    std::memcpy(&question, input.data(), sizeof(question));
    const SMCParamBlock* answer = nullptr;
    if (static_cast<SMCCommand>(question.command) == SMCCommand::keyByIndex) {
        answer = &byIndex_[question.data32];
    } else {
        const Answers& answers = byKey_.find(question.key)->second;
        const bool isInfo = static_cast<SMCCommand>(question.command) == SMCCommand::readKeyInfo;
        answer = isInfo ? &answers.info : &answers.bytes;
    }
    std::memcpy(output.data(), answer, sizeof(*answer));
    return kernSuccess;
}

MemoryMachine::MemoryMachine(const std::vector<std::string>& keys)
    : driver(std::make_shared<MemoryDriver>(keys)) {
    const auto clock = std::make_shared<StandingClock>();
    machine = {.source = std::make_shared<SMCBridge>(driver, std::make_shared<EmptyRegistry>(), clock),
               .system = nullptr,
               .clock = clock};
}

LoadPass discoveringPass() {
    const auto none = std::make_shared<const KeySet>();
    return {
        .fixedCandidates = none, .shouldDiscover = true, .cachedDynamicKeys = none, .readSuperIOFans = true};
}

LoadPass passOver(const std::vector<std::string>& keys, bool readSuperIOFans) {
    return {.fixedCandidates = std::make_shared<const KeySet>(),
            .shouldDiscover = false,
            .cachedDynamicKeys = std::make_shared<const KeySet>(keys.begin(), keys.end()),
            .readSuperIOFans = readSuperIOFans};
}

} // namespace kelvinbar::bench
