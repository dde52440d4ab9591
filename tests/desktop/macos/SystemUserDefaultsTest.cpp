#include "desktop/macos/SystemUserDefaults.h"

#include "tests/fakes/RecordingLog.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::system_user_defaults_test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Optional;

/// On the platform of this machine, with the store that QSettings has there.
class SystemUserDefaultsTest : public testing::Test {
  protected:
    SystemUserDefaultsTest() {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder_.path());
    }

    ~SystemUserDefaultsTest() override {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                           qEnvironmentVariable("XDG_CONFIG_HOME"));
    }

    SystemUserDefaults open() { return {"kelvinbar.org", "test-name", recording_.log}; }

    QTemporaryDir folder_;
    fakes::RecordingLog recording_;
};

TEST_F(SystemUserDefaultsTest, KeepsValues) {
    auto defaults = open();
    defaults.setText("text", "fast");
    defaults.setTextList("list", {"TC0P", "VTT "});
    defaults.setNumber("number", 500.5);
    const auto stored = open();
    EXPECT_THAT(stored.text("text"), Optional(std::string("fast")));
    EXPECT_THAT(stored.textList("list"), Optional(TextList{"TC0P", "VTT "}));
    EXPECT_EQ(stored.number("number"), 500.5);
    EXPECT_THAT(recording_.lines(), IsEmpty());
}

TEST_F(SystemUserDefaultsTest, Removes) {
    auto defaults = open();
    defaults.setText("text", "fast");
    defaults.remove("text");
    EXPECT_EQ(defaults.text("text"), std::nullopt);
    EXPECT_EQ(open().text("text"), std::nullopt);
}

TEST_F(SystemUserDefaultsTest, WarnsOnceThatNothingCanBeWritten) {
    QDir().mkpath(folder_.filePath("kelvinbar.org/test-name.conf")); // a folder in place of the file
    auto defaults = open();
    defaults.setText("a", "1");
    defaults.setText("b", "1");
    EXPECT_THAT(recording_.lines(), ElementsAre(HasSubstr("cannot be written")));
}

} // namespace
} // namespace kelvinbar::system_user_defaults_test
