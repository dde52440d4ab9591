#include "machines/linux/libsensors/ConfiguredValue.h"

#include "tests/machines/linux/libsensors/FakeSensorConfiguration.h"

#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include <gtest/gtest.h>

namespace kelvinbar::configured_value_test {

namespace {

/// A sensor that changes with every read, as a counter or a noisy voltage does.
class MovingSensor {
  public:
    using Step = std::function<double(int)>;

    explicit MovingSensor(Step step) : step_(std::move(step)) {}

    double next() { return step_(reads_++); }

  private:
    Step step_;
    int reads_ = 0;
};

class FormulaOfMovingSensor final : public ComputedValue {
  public:
    FormulaOfMovingSensor(MovingSensor& sensor, double factor) : sensor_(sensor), factor_(factor) {}

    [[nodiscard]] std::optional<double> read() const override { return factor_ * sensor_.next(); }

    [[nodiscard]] bool isSilent() const override { return false; }

  private:
    MovingSensor& sensor_;
    double factor_;
};

class ConfiguredValueTest : public testing::Test {
  protected:
    /// The value while the kernel's value stays the same.
    std::optional<double> valueAt(double fromKernel) {
        return value.value(fromKernel, [=] { return std::optional(fromKernel); });
    }

    /// Whether the value of a changing sensor is considered computed.
    static bool isComputed(MovingSensor sensor, double factor) {
        const ConfiguredValue configured(std::make_unique<FormulaOfMovingSensor>(sensor, factor));
        const auto readAgain = [&sensor] { return std::optional(sensor.next()); };
        static_cast<void>(configured.value(sensor.next(), readAgain));
        EXPECT_TRUE(configured.isDecided());
        constexpr double neverRead = -1;
        return configured.value(neverRead, readAgain) != neverRead;
    }

    fakes::FakeComputation computation;
    ConfiguredValue value{std::make_unique<fakes::FakeComputedValue>(computation)};
};

TEST_F(ConfiguredValueTest, AValueThatIsTheKernelsIsComparedOnceAndNeverReadAgain) {
    computation.value = 45.5;
    EXPECT_EQ(valueAt(45.5), 45.5);
    EXPECT_TRUE(value.isDecided());
    EXPECT_EQ(computation.reads, 1);
    EXPECT_EQ(valueAt(46), 46);
    EXPECT_EQ(computation.reads, 1);
}

TEST_F(ConfiguredValueTest, AValueThatDiffersIsComputedFromThenOn) {
    computation.value = 12.1;
    EXPECT_EQ(valueAt(1.1), 12.1);
    computation.value = 12.2;
    EXPECT_EQ(valueAt(1.11), 12.2);
    computation.value = 1.5;
    EXPECT_EQ(valueAt(1.5), 1.5);
    computation.value = 13.0;
    EXPECT_EQ(valueAt(1.6), 13.0);
}

TEST_F(ConfiguredValueTest, ADifferenceInTheLastBitsIsRounding) {
    computation.value = 0.1 + 0.2;
    EXPECT_EQ(valueAt(0.3), 0.3);
    computation.value = 99;
    EXPECT_EQ(valueAt(0.3), 0.3);
}

TEST_F(ConfiguredValueTest, ASmallCorrectionIsNotRounding) {
    computation.value = 1.001;
    EXPECT_EQ(valueAt(1), 1.001);
}

TEST_F(ConfiguredValueTest, AStandingFanDecidesNothing) {
    computation.value = 0;
    EXPECT_EQ(valueAt(0), 0);
    EXPECT_FALSE(value.isDecided());
    computation.value = 600;
    EXPECT_EQ(valueAt(1200), 600);
    EXPECT_TRUE(value.isDecided());
}

TEST_F(ConfiguredValueTest, AtZeroNothingIsComputed) {
    computation.value = 0;
    EXPECT_EQ(valueAt(0), 0);
    EXPECT_EQ(computation.reads, 0);
}

TEST_F(ConfiguredValueTest, AComputationThatFailsDecidesNothingAndTheKernelsValueStands) {
    EXPECT_EQ(valueAt(3.3), 3.3);
    EXPECT_FALSE(value.isDecided());
    computation.value = 6.6;
    EXPECT_EQ(valueAt(3.3), 6.6);
}

TEST_F(ConfiguredValueTest, AComputedValueThatFailsIsNoValue) {
    computation.value = 6.6;
    EXPECT_EQ(valueAt(3.3), 6.6);
    computation.value = std::nullopt;
    EXPECT_EQ(valueAt(3.3), std::nullopt);
}

TEST_F(ConfiguredValueTest, ASensorThatCannotBeReadAgainDecidesNothing) {
    computation.value = 6.6;
    EXPECT_EQ(value.value(3.3, [] { return std::nullopt; }), 3.3);
    EXPECT_FALSE(value.isDecided());
}

TEST_F(ConfiguredValueTest, ACounterThatGrowsWithEveryReadIsTheKernels) {
    const auto counter = [](int reads) { return 5000.0 + reads; };
    EXPECT_FALSE(isComputed(MovingSensor(counter), 1));
    EXPECT_TRUE(isComputed(MovingSensor(counter), 2));
}

TEST_F(ConfiguredValueTest, ASensorThatMovesNowAndThenIsTheKernels) {
    const auto noisy = [](int reads) { return reads < 2 ? 40.0 + 5 * reads : 42.0; };
    EXPECT_FALSE(isComputed(MovingSensor(noisy), 1));
    EXPECT_TRUE(isComputed(MovingSensor(noisy), 1.5));
}

} // namespace
} // namespace kelvinbar::configured_value_test
