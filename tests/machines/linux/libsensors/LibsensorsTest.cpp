#include "machines/linux/libsensors/Libsensors.h"

#include "tests/fakes/RecordingLog.h"
#include "tests/machines/linux/TemporaryTree.h"
#include "tests/machines/linux/libsensors/FakeLibsensors.h"

#include <dlfcn.h>
#include <filesystem>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::libsensors_test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* hwmon = "/sys/class/hwmon/hwmon2";

class LibsensorsTest : public testing::Test {
  protected:
    void SetUp() override {
        library_.reset(::dlopen(KELVINBAR_FAKE_LIBSENSORS, RTLD_NOW | RTLD_LOCAL));
        ASSERT_NE(library_, nullptr);
        fake = reinterpret_cast<decltype(&fakeLibsensors)>(::dlsym(library_.get(), "fakeLibsensors"))();
        fake->chips = {{hwmon,
                        {{"temp1", SENSORS_FEATURE_TEMP, "Case", 40, 0, SENSORS_SUBFEATURE_TEMP_INPUT},
                         {"in3", SENSORS_FEATURE_IN, "in3", 3.3, 0, SENSORS_SUBFEATURE_IN_INPUT}}}};
    }

    void TearDown() override {
        configuration.reset();
        EXPECT_EQ(fake->cleanups, fake->inits);
        EXPECT_EQ(fake->misuses, 0);
        EXPECT_FALSE(fake->hadTwoCallers);
    }

    /// Chips of the machine, each with one temperature.
    static std::vector<SensorChip> chipsIn(const std::vector<std::string>& folders) {
        std::vector<SensorChip> chips;
        for (const std::string& folder : folders) {
            SensorChip& chip = chips.emplace_back();
            chip.folder = folder;
            chip.channels.emplace_back(SensorKind::temperature, 1);
            chip.channels.back().feature = "temp1";
        }
        return chips;
    }

    void open(const std::filesystem::path& library = KELVINBAR_FAKE_LIBSENSORS) {
        configuration = libsensorsConfiguration(log.log, {library, etc.root()});
        ASSERT_NE(configuration, nullptr);
    }

    void refresh(const std::vector<std::string>& folders = {hwmon}) {
        if (configuration == nullptr) open();
        configuration->refresh(chipsIn(folders));
    }

    [[nodiscard]] const ConfiguredChip* find() const { return configuration->find(chipsIn({hwmon}).front()); }

    /// The displayed value of a feature whose file has this content.
    [[nodiscard]] std::optional<double> valueOf(const char* feature, double fromKernel) const {
        return find()->find(feature)->second.value->value(fromKernel,
                                                          [=] { return std::optional(fromKernel); });
    }

  private:
    struct Close {
        void operator()(void* library) const { ::dlclose(library); }
    };

    std::unique_ptr<void, Close> library_;

  protected:
    fakes::TemporaryTree etc;
    fakes::RecordingLog log{"source.kernel=info"};
    fakes::FakeLibsensors* fake = nullptr;
    std::shared_ptr<SensorConfiguration> configuration;
};

TEST_F(LibsensorsTest, FeaturesHaveTheLibrarysLabels) {
    refresh();
    ASSERT_NE(find(), nullptr);
    ASSERT_EQ(find()->size(), 2U);
    EXPECT_EQ(find()->find("temp1")->second.label, "Case");
    EXPECT_EQ(find()->find("in3")->second.label, "in3");
}

TEST_F(LibsensorsTest, AChipInAnotherFolderIsNotKnown) {
    refresh();
    EXPECT_EQ(configuration->find(chipsIn({"/sys/class/hwmon/hwmon3"}).front()), nullptr);
}

TEST_F(LibsensorsTest, ValuesAreTheLibrarysWhereTheyDiffer) {
    refresh();
    EXPECT_EQ(valueOf("temp1", 30), 40);
    EXPECT_EQ(valueOf("in3", 3.3), 3.3);
    fake->reads = 0;
    EXPECT_EQ(valueOf("temp1", 31), 40);
    EXPECT_EQ(fake->reads, 1);
    EXPECT_EQ(valueOf("in3", 3.4), 3.4);
    EXPECT_EQ(fake->reads, 1);
}

TEST_F(LibsensorsTest, PowerIsTheAverageWhereThatIsAllThereIs) {
    fake->chips[0].features = {
        {"power1", SENSORS_FEATURE_POWER, "power1", 7, 0, SENSORS_SUBFEATURE_POWER_AVERAGE}};
    refresh();
    EXPECT_EQ(valueOf("power1", 14), 7);
}

TEST_F(LibsensorsTest, AFeatureThatMeasuresNothingHasNoValue) {
    fake->chips[0].features = {
        {"intrusion0", SENSORS_FEATURE_INTRUSION, "intrusion0", 1, 0, SENSORS_SUBFEATURE_INTRUSION_ALARM}};
    refresh();
    EXPECT_EQ(find()->find("intrusion0")->second.value, nullptr);
}

TEST_F(LibsensorsTest, AValueThatCannotBeReadOrIsNoNumberIsTheKernels) {
    fake->chips[0].features[0].error = -4;
    fake->chips[0].features[1].value = std::numeric_limits<double>::quiet_NaN();
    refresh();
    EXPECT_EQ(valueOf("temp1", 30), 30);
    EXPECT_EQ(valueOf("in3", 3.4), 3.4);
}

// When the library starts

TEST_F(LibsensorsTest, TheLibraryStartsAtTheFirstDiscovery) {
    open();
    EXPECT_EQ(fake->inits, 0);
    EXPECT_EQ(find(), nullptr);
    refresh();
    EXPECT_EQ(fake->inits, 1);
}

TEST_F(LibsensorsTest, TheLibraryIsNotCalledWhileNothingChanges) {
    etc.write("sensors3.conf", "chip \"*\"\n");
    refresh();
    refresh();
    EXPECT_EQ(fake->inits, 1);
    EXPECT_EQ(fake->reads, 0);
}

TEST_F(LibsensorsTest, TheLibraryStartsAnewWhenTheConfigurationChanged) {
    refresh();
    fake->chips[0].features[0].label = "Intake";
    etc.write("sensors.d/board", "chip \"*\"\n label temp1 \"Intake\"\n");
    refresh();
    EXPECT_EQ(fake->inits, 2);
    EXPECT_EQ(fake->cleanups, 1);
    EXPECT_EQ(find()->find("temp1")->second.label, "Intake");
}

TEST_F(LibsensorsTest, TheLibraryStartsAnewWhenAChipCame) {
    refresh();
    refresh({hwmon, "/sys/class/hwmon/hwmon3"});
    EXPECT_EQ(fake->inits, 2);
}

TEST_F(LibsensorsTest, AValueFromBeforeANewStartIsReadNoMore) {
    refresh();
    const auto value = find()->find("temp1")->second.value;
    const auto kernel = [] { return std::optional(30.0); };
    EXPECT_EQ(value->value(30, kernel), 40);
    refresh({hwmon, "/sys/class/hwmon/hwmon3"});
    EXPECT_EQ(value->value(30, kernel), std::nullopt);
}

TEST_F(LibsensorsTest, AValueOutlivesTheConfiguration) {
    refresh();
    auto value = find()->find("temp1")->second.value;
    configuration.reset();
    EXPECT_EQ(value->value(30, [] { return std::optional(30.0); }), 40);
    EXPECT_EQ(fake->cleanups, 0);
    value.reset();
    EXPECT_EQ(fake->cleanups, 1);
}

TEST_F(LibsensorsTest, ThreadsEnterTheLibraryOneAtATime) {
    refresh();
    const auto value = find()->find("temp1")->second.value;
    const auto read = [&value] {
        for (int count = 0; count < 500; ++count) {
            static_cast<void>(value->value(30, [] { return std::optional(30.0); }));
        }
    };
    std::vector<std::thread> threads;
    for (int count = 0; count < 4; ++count) threads.emplace_back(read);
    for (int count = 0; count < 20; ++count) {
        etc.write("sensors.d/board", std::string(static_cast<std::size_t>(count), '\n'));
        refresh();
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(fake->inits, 21);
}

// Without the library

TEST_F(LibsensorsTest, WithoutTheLibraryNothingIsConfiguredAndTheLogSaysSoOnce) {
    open("/nowhere/libsensors.so.5");
    refresh();
    refresh();
    EXPECT_EQ(find(), nullptr);
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_THAT(log.lines()[0], HasSubstr("libsensors is not used: /nowhere/libsensors.so.5"));
}

TEST_F(LibsensorsTest, ALibraryThatLacksAFunctionIsNotUsed) {
    open(KELVINBAR_LACKING_LIBSENSORS);
    refresh();
    EXPECT_EQ(find(), nullptr);
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_THAT(log.lines()[0], HasSubstr("libsensors is not used: sensors_get_label is missing"));
}

TEST_F(LibsensorsTest, AStartThatFailsIsTriedAgainWhenTheConfigurationChanged) {
    fake->initResult = -4;
    refresh();
    refresh();
    EXPECT_EQ(find(), nullptr);
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_THAT(log.lines()[0], HasSubstr("libsensors is not used: Kernel interface error"));
    fake->initResult = 0;
    etc.write("sensors.d/board", "chip \"*\"\n");
    refresh();
    EXPECT_NE(find(), nullptr);
}

TEST_F(LibsensorsTest, AStartThatFailsAfterOneThatDidNotLeavesNothing) {
    refresh();
    fake->initResult = -8;
    etc.write("sensors.d/board", "chip\n");
    refresh();
    EXPECT_EQ(find(), nullptr);
}

// The log

TEST_F(LibsensorsTest, TheLogNamesTheVersionAndTheConfiguration) {
    const auto main = etc.write("sensors3.conf", "");
    const auto board = etc.write("sensors.d/board", "");
    refresh();
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_THAT(log.lines()[0],
                HasSubstr("libsensors 9.8.7 is used with " + main.string() + ", " + board.string()));
}

TEST_F(LibsensorsTest, ErrorsInTheConfigurationAreWarnings) {
    fake->parseError = "syntax error";
    refresh();
    ASSERT_EQ(log.lines().size(), 2U);
    EXPECT_THAT(log.lines()[0], HasSubstr("libsensors: /etc/sensors.d/board:3: syntax error"));
}

TEST_F(LibsensorsTest, DescribesWhichConfigurationIsUsed) {
    etc.write("sensors3.conf", "");
    refresh();
    EXPECT_THAT(configuration->report().description, HasSubstr("is used with "));
    EXPECT_THAT(configuration->report().description, HasSubstr("sensors3.conf"));
    open("/nonexistent.so");
    refresh();
    EXPECT_THAT(configuration->report().description, HasSubstr("libsensors is not used: /nonexistent.so"));
}

TEST_F(LibsensorsTest, ReportsErrorsOfTheLastStart) {
    fake->parseError = "syntax error";
    refresh();
    EXPECT_TRUE(configuration->report().isUsed);
    EXPECT_THAT(configuration->report().errors, ElementsAre("/etc/sensors.d/board:3: syntax error"));
    fake->parseError = "";
    etc.write("sensors.d/board", "chip \"*\"\n");
    refresh();
    EXPECT_THAT(configuration->report().errors, IsEmpty());
}

TEST_F(LibsensorsTest, ReportsThatFilesDoNotCountWithoutTheLibrary) {
    open("/nowhere/libsensors.so.5");
    refresh();
    EXPECT_FALSE(configuration->report().isUsed);
    EXPECT_FALSE(configuration->report().hasFiles);
    etc.write("sensors.d/board", "chip \"*\"\n");
    fake->initResult = -4;
    open();
    refresh();
    EXPECT_FALSE(configuration->report().isUsed);
    EXPECT_TRUE(configuration->report().hasFiles);
}

} // namespace
} // namespace kelvinbar::libsensors_test
