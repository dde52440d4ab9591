#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

namespace kelvinbar {

/// Port: a feature's value after the configuration's formulas, in the unit of its kind. Any thread.
class ComputedValue {
  public:
    virtual ~ComputedValue() = default;
    /// Blocks while the driver reads. Nothing when the feature cannot be read.
    [[nodiscard]] virtual std::optional<double> read() const = 0;
    /// Whether nothing could be read last because another read does not come back.
    [[nodiscard]] virtual bool isSilent() const = 0;
};

/// Decides whether the configuration changes a feature's value.
///
/// libsensors cannot be asked whether a feature has a formula, and reading every sensor through it would be
/// slow. So the two values are compared once. If they are equal, the feature is read from its file from then
/// on; otherwise through libsensors. A value of 0 decides nothing, since most formulas map 0 to 0. Any
/// thread.
class ConfiguredValue {
  public:
    /// Reads the value in the file, in the unit of the kind.
    using KernelValue = std::function<std::optional<double>()>;

    explicit ConfiguredValue(std::unique_ptr<ComputedValue> computed) : computed_(std::move(computed)) {}

    /// Whether the comparison has been made.
    [[nodiscard]] bool isDecided() const { return origin_ != Origin::unknown; }

    /// Whether there is no value because another read does not come back.
    [[nodiscard]] bool isSilent() const { return origin_ == Origin::computed && computed_->isSilent(); }

    /// The value to show when the file holds `fromKernel`. Calls `readAgain` only while comparing. Nothing
    /// when the value must be computed and that fails.
    [[nodiscard]] std::optional<double> value(double fromKernel, const KernelValue& readAgain) const;

  private:
    enum class Origin { unknown, kernel, computed };

    [[nodiscard]] Origin compared(double fromKernel, const KernelValue& readAgain) const;

    std::unique_ptr<ComputedValue> computed_;
    mutable std::atomic<Origin> origin_ = Origin::unknown;
};

} // namespace kelvinbar
