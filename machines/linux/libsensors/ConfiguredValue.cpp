#include "machines/linux/libsensors/ConfiguredValue.h"

#include <algorithm>
#include <cmath>

namespace kelvinbar {

namespace {

/// Both are the same integer divided by the same scale, so only the last bits can differ.
bool isSame(double left, double right) {
    constexpr double rounding = 1e-9;
    return std::abs(left - right) <= rounding * std::max(std::abs(left), std::abs(right));
}

bool isBetween(double value, double one, double other) {
    return value >= std::min(one, other) && value <= std::max(one, other);
}

} // namespace

/// The sensor may change between the reads, so the file is read before and after. A counter grows with each
/// read and never equals either value; it is unchanged by the configuration if it lies between them each
/// time.
ConfiguredValue::Origin ConfiguredValue::compared(double fromKernel, const KernelValue& readAgain) const {
    constexpr int attempts = 4;
    bool isAlwaysBetween = true;
    double before = fromKernel;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const auto computed = computed_->read();
        const auto after = readAgain();
        if (!computed || !after) return Origin::unknown;
        if (isSame(*computed, before) || isSame(*computed, *after)) {
            return *computed == 0 ? Origin::unknown : Origin::kernel;
        }
        isAlwaysBetween = isAlwaysBetween && isBetween(*computed, before, *after);
        before = *after;
    }
    return isAlwaysBetween ? Origin::kernel : Origin::computed;
}

std::optional<double> ConfiguredValue::value(double fromKernel, const KernelValue& readAgain) const {
    if (origin_ == Origin::unknown && fromKernel != 0) origin_ = compared(fromKernel, readAgain);
    return origin_ == Origin::computed ? computed_->read() : std::optional(fromKernel);
}

} // namespace kelvinbar
