#include "desktop/linux/settings/SerializedValues.h"

#include <QByteArray>
#include <QDateTime>
#include <QFile>
#include <QSettings>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariant>
#include <QVariantMap>

#include <gtest/gtest.h>

namespace kelvinbar::serialized_values_test {

namespace {

bool holdsIn(const QByteArray& value) { return holdsSerializedValues("[General]\nkey=" + value + "\n"); }

TEST(SerializedValues, AreFound) {
    EXPECT_TRUE(holdsIn(R"(@Variant(\0\0\0\b\0\0\0\0))"));
    EXPECT_TRUE(holdsIn(R"(@DateTime(\0\0\0\x10))"));
    EXPECT_TRUE(holdsIn("a, @Variant(b)"));
}

TEST(SerializedValues, AreFoundBehindEscapesAndQuotes) {
    EXPECT_TRUE(holdsIn(R"(\x40Variant(a))"));
    EXPECT_TRUE(holdsIn(R"(\x10040Variant(a))"));
    EXPECT_TRUE(holdsIn(R"(\100Variant\50a))"));
    EXPECT_TRUE(holdsIn(R"(\0200100Variant(a))"));
    EXPECT_TRUE(holdsIn(R"("@"  Va\xriant(a))"));
    EXPECT_TRUE(holdsIn("@Va\\\r\nriant(a)"));
    EXPECT_TRUE(holdsIn("  \"\xEF\xBB\xBF@Variant(a)\""));
    EXPECT_TRUE(holdsSerializedValues("1=@\n2=@Variant(a)\n"));
}

TEST(SerializedValues, AreNoTextsListsAndNumbers) {
    EXPECT_FALSE(holdsIn("TC0P, \"k10temp-pci-00c3/temp1\", @@d"));
    EXPECT_FALSE(holdsIn("@Invalid()"));
    EXPECT_FALSE(holdsIn("@Size(4 5)"));
    EXPECT_FALSE(holdsIn("@@Variant(a)"));
    EXPECT_FALSE(holdsIn(R"(a\\x40Variant(a))"));
    EXPECT_FALSE(holdsIn("Variant(a)"));
    EXPECT_FALSE(holdsSerializedValues({}));
}

/// Whether the text that QSettings writes for this value holds a serialized one.
bool areWrittenFor(const QVariant& value) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("settings.conf");
    {
        QSettings settings(path, QSettings::NativeFormat);
        settings.setValue("key", value);
    }
    QFile file(path);
    EXPECT_TRUE(file.open(QFile::ReadOnly));
    return holdsSerializedValues(file.readAll());
}

TEST(SerializedValues, AreWhatQSettingsWritesForObjects) {
    EXPECT_TRUE(areWrittenFor(QVariantMap{{"a", 1}}));
    EXPECT_TRUE(areWrittenFor(QDateTime::fromSecsSinceEpoch(0)));
    EXPECT_FALSE(areWrittenFor("@Variant(a)"));
    EXPECT_FALSE(areWrittenFor(QStringList{"@Variant(a)", "@DateTime(b)"}));
    EXPECT_FALSE(areWrittenFor(QStringList()));
    EXPECT_FALSE(areWrittenFor(1.5));
}

} // namespace
} // namespace kelvinbar::serialized_values_test
