#pragma once

#include "sensors/CriticalLimits.h"

#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kelvinbar {

/// The critical temperatures that hardware monitors (temp1_crit) and thermal zones (critical trip points)
/// publish. Both are looked up once, by the first question that all devices answer. Limits of 0 °C and below
/// mean that the driver knows none.
class ChipLimits final : public CriticalLimits {
  public:
    /// `root` is the directory that holds sys/.
    explicit ChipLimits(std::filesystem::path root) : root_(std::move(root)) {}

    [[nodiscard]] std::optional<CriticalMargin> smallestMargin() override;

  private:
    /// A temperature with its limit, both in thousandths of a degree. The limit is read each time too: users
    /// may change it.
    struct LimitedChannel {
        std::string name;
        std::filesystem::path device; ///< of the watch
        std::filesystem::path value;
        std::filesystem::path limit;
        std::filesystem::path fault{}; ///< may be empty
        std::vector<std::filesystem::path> powerStates{};
    };

    using Channels = std::vector<LimitedChannel>;

    [[nodiscard]] std::shared_ptr<const Channels> channels();
    void addChips(Channels& channels) const;
    void addZones(Channels& channels) const;
    [[nodiscard]] static std::optional<double> degreesBelowLimit(const LimitedChannel& channel);

    const std::filesystem::path root_;
    std::mutex mutex_;                         ///< not held while files are read
    std::shared_ptr<const Channels> channels_; ///< null before all devices have answered
};

} // namespace kelvinbar
