#pragma once

#include "base/Clock.h"
#include "machines/replay/RecordedKeys.h"

#include <chrono>
#include <memory>
#include <unordered_map>
#include <vector>

namespace kelvinbar {

/// Recorded keys whose values move as on a machine at work: temperatures, power and currents follow a load,
/// fans follow the heat, voltages waver. What does not change on a real machine stays.
class DemoKeys final : public SMCKeySource {
  public:
    DemoKeys(std::vector<RecordedKey> keys, std::shared_ptr<const MonotonicClock> clock);

    bool isPresent() override { return recorded_.isPresent(); }

    std::size_t keyCount() override { return recorded_.keyCount(); }

    std::optional<std::uint32_t> keyAtIndex(std::uint32_t index) override {
        return recorded_.keyAtIndex(index);
    }

    std::optional<KeyInfo> keyInfo(std::uint32_t code) override { return recorded_.keyInfo(code); }

    std::uint8_t readBytes(std::uint32_t code, SMCBytes& bytes) override;

  private:
    enum class Motion : std::uint8_t { none, heat, fan, work, rail };

    [[nodiscard]] static Motion motionOf(std::uint32_t code);
    [[nodiscard]] double factor(Motion motion, std::uint32_t code) const;

    RecordedKeys recorded_;
    std::shared_ptr<const MonotonicClock> clock_;
    std::unordered_map<std::uint32_t, Motion> motions_;
};

} // namespace kelvinbar
