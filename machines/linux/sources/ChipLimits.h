#pragma once

#include "sensors/CriticalLimits.h"

#include <filesystem>
#include <string>
#include <vector>

namespace kelvinbar {

/// The critical temperatures that hardware monitors (temp1_crit) and thermal zones (critical trip points)
/// publish. Both are looked up once, at the first question. Limits of 0 °C and below mean that the driver
/// knows none.
class ChipLimits final : public CriticalLimits {
  public:
    /// `root` is the directory that holds sys/.
    explicit ChipLimits(std::filesystem::path root) : root_(std::move(root)) {}

    [[nodiscard]] std::optional<CriticalMargin> smallestMargin(std::span<const SilentDevice> silent) override;

  private:
    /// A temperature with its limit, both in thousandths of a degree. The limit is read each time too: users
    /// may change it.
    struct LimitedChannel {
        std::string name;
        std::string device; ///< of the watch
        std::filesystem::path value;
        std::filesystem::path limit;
        std::filesystem::path fault{}; ///< may be empty
        std::vector<std::filesystem::path> powerStates{};
    };

    void find();
    void findChips();
    void findZones();
    [[nodiscard]] static std::optional<double> degreesBelowLimit(const LimitedChannel& channel);

    std::filesystem::path root_;
    bool isFound_ = false;
    std::vector<LimitedChannel> channels_;
};

} // namespace kelvinbar
