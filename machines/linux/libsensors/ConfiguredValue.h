#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

namespace kelvinbar {

/// Port: the value of a feature as the configuration computes it, in the unit of its kind. Any thread.
class ComputedValue {
  public:
    virtual ~ComputedValue() = default;
    /// Nothing when the feature cannot be read.
    [[nodiscard]] virtual std::optional<double> read() const = 0;
};

/// Tells whether a feature's value is the kernel's own or one that the configuration computes from it. That
/// cannot be asked for, so the two are compared once. The feature then either stays with its file, or is read
/// through the configuration every time. At 0 most formulas change nothing, so nothing is decided there. Any
/// thread.
class ConfiguredValue {
  public:
    /// Reads the kernel's value.
    using KernelValue = std::function<std::optional<double>()>;

    explicit ConfiguredValue(std::unique_ptr<ComputedValue> computed) : computed_(std::move(computed)) {}

    /// Whether the comparison is done.
    [[nodiscard]] bool isDecided() const { return origin_ != Origin::unknown; }

    /// The value where the kernel's is `fromKernel`. Calls `readAgain` only while comparing. Nothing when the
    /// value has to be computed and that fails.
    [[nodiscard]] std::optional<double> value(double fromKernel, const KernelValue& readAgain) const;

  private:
    enum class Origin { unknown, kernel, computed };

    [[nodiscard]] Origin compared(double fromKernel, const KernelValue& readAgain) const;

    std::unique_ptr<ComputedValue> computed_;
    mutable std::atomic<Origin> origin_ = Origin::unknown;
};

} // namespace kelvinbar
