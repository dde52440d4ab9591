// A driver that lies: each answer is the next bytes of the input, whatever the question.

#include "fuzz/Check.h"
#include "fuzz/StandingClock.h"
#include "sensors/Machine.h"
#include "smc/SMCBridge.h"
#include "smc/SMCKeyText.h"
#include "smc/SMCParamBlock.h"
#include "store/LoadPass.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar::fuzz {

namespace {

class LyingDriver final : public SMCDriver {
  public:
    explicit LyingDriver(std::span<const std::uint8_t> input) : rest_(input) {}

    std::optional<Service> findService(std::string_view /*className*/) override {
        return takeByte() == 0xFF ? std::nullopt : std::optional<Service>(1);
    }

    OpenResult open(Service /*service*/) override {
        const std::uint8_t byte = takeByte();
        return {.code = byte == 0xFE ? 0xE00002C1U : kernSuccess, .connection = byte};
    }

    ReturnCode callStructMethod(Connection /*connection*/, std::uint32_t /*selector*/,
                                std::span<const std::byte> /*input*/, std::span<std::byte> output,
                                std::size_t& outputSize) override {
        if (rest_.empty()) return 0xE00002BC;
        SMCParamBlock answer;
        take(&answer.key, sizeof(answer.key));
        take(&answer.dataSize, 1);
        take(&answer.dataType, sizeof(answer.dataType));
        take(answer.bytes.data(), 4);
        const std::uint8_t verdict = takeByte();
        answer.result = verdict > 0xF0 ? verdict : 0;
        std::memcpy(output.data(), &answer, sizeof(answer));
        outputSize = verdict;
        return verdict == 0xF0 ? 0xE00002C2U : kernSuccess;
    }

    void close(Connection /*connection*/) override {}

  private:
    void take(void* target, std::size_t count) {
        const std::size_t given = std::min(count, rest_.size());
        std::memcpy(target, rest_.data(), given);
        rest_ = rest_.subspan(given);
    }

    std::uint8_t takeByte() {
        std::uint8_t byte = 0;
        take(&byte, 1);
        return byte;
    }

    std::span<const std::uint8_t> rest_;
};

/// A registry without entries.
class EmptyRegistry final : public IORegistry {
  public:
    std::unique_ptr<IORegistryIterator> iterateRecursively(std::string_view /*plane*/) override {
        return nullptr;
    }
};

Machine lyingMachine(std::span<const std::uint8_t> input) {
    const auto clock = std::make_shared<StandingClock>();
    return {.source = std::make_shared<SMCBridge>(std::make_shared<LyingDriver>(input),
                                                  std::make_shared<EmptyRegistry>(), clock),
            .system = nullptr,
            .clock = clock};
}

void listKeys(std::span<const std::uint8_t> input) {
    const Machine machine = lyingMachine(input);
    const std::vector<std::string> keys = machine.source->discoverKeys({});
    check(keys.size() <= 8192, "at most 8192 keys");
    check(std::ranges::all_of(keys, isPrintableSMCKey), "listed keys are printable");
    check(std::set<std::string>(keys.begin(), keys.end()).size() == keys.size(), "each key is listed once");
    check(machine.source->readCandidateKeys(keys).size() <= 1024, "at most 1024 keys are read");

    const auto noKeys = std::make_shared<const KeySet>();
    const SMCLoadResult result = loadReadings(lyingMachine(input), {.fixedCandidates = noKeys,
                                                                    .shouldDiscover = true,
                                                                    .cachedDynamicKeys = noKeys,
                                                                    .readSuperIOFans = true});
    check(std::ranges::all_of(result.readings, &SMCReading::hasDisplayableValue), "readings have values");
    check(!result.statusMessage.empty(), "a pass has a status message");
}

} // namespace

} // namespace kelvinbar::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kelvinbar::fuzz::listKeys({data, size});
    return 0;
}
