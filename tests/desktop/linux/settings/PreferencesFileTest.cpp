#include "desktop/linux/settings/PreferencesFile.h"

#include "store/Preferences.h"
#include "tests/desktop/EventLoop.h"
#include "tests/desktop/FileSizeLimit.h"
#include "tests/desktop/TemporaryVariable.h"
#include "tests/fakes/RecordingLog.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <chrono>
#include <csignal>
#include <memory>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::preferences_file_test {

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Optional;
using testing::SizeIs;

/// Fails the test if anything is logged.
class FailingSink final : public LogSink {
  public:
    void write(std::string_view line) override { ADD_FAILURE() << line; }
};

/// Each test has its own folder for preferences.
class PreferencesFileTest : public testing::Test {
  protected:
    QString path(const QString& name = "test-name") const {
        return config_.filePath("kelvinbar/" + name + ".conf");
    }

    QByteArray bytes(const QString& file) const {
        QFile source(file);
        EXPECT_TRUE(source.open(QFile::ReadOnly)) << file.toStdString();
        return source.readAll();
    }

    QByteArray bytes() const { return bytes(path()); }

    void write(const QByteArray& content) {
        QDir().mkpath(config_.filePath("kelvinbar"));
        QFile file(path());
        ASSERT_TRUE(file.open(QFile::WriteOnly | QFile::Truncate));
        file.write(content);
    }

    PreferencesFile open(const QString& name = "test-name") {
        return {name, recording_.log, {.retries = {10ms}, .atEnd = 100ms}};
    }

    /// Waits until `defaults` has written, or has tried to.
    static void flush(PreferencesFile& defaults) { defaults.flush(10s); }

    /// What `defaults` has written, read by a new object that shares nothing in memory.
    std::unique_ptr<PreferencesFile> onDisk(PreferencesFile& defaults) {
        flush(defaults);
        const QString name = QString("copy-%1").arg(++copies_);
        EXPECT_TRUE(QFile::copy(path(), path(name)));
        return std::make_unique<PreferencesFile>(name, failing_);
    }

    /// Starts another process that writes the keys `prefix`0, `prefix`1, and so on.
    std::unique_ptr<QProcess> startWriter(const QString& prefix, int count) {
        return startProcess({"--write-preferences", "test-name", prefix, QString::number(count)});
    }

    /// Starts another process that takes its turn to write, and keeps it until it is killed.
    std::unique_ptr<QProcess> startTurnHolder() {
        QDir().mkpath(config_.filePath("kelvinbar"));
        auto holder = startProcess({"--hold-lock", path() + ".turn"});
        // The file is made before its owner's name is written into it.
        EXPECT_TRUE(waitFor([&] { return QFileInfo(path() + ".turn").size() > 0; }));
        return holder;
    }

    static bool hasEnded(QProcess& process) {
        return process.state() == QProcess::NotRunning || process.waitForFinished();
    }

    std::unique_ptr<QProcess> startProcess(const QStringList& arguments) {
        auto process = std::make_unique<QProcess>();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("XDG_CONFIG_HOME", config_.path());
        process->setProcessEnvironment(environment);
        process->setProcessChannelMode(QProcess::ForwardedChannels);
        process->start(QCoreApplication::applicationFilePath(), arguments);
        EXPECT_TRUE(process->waitForStarted());
        return process;
    }

    QTemporaryDir config_;
    TemporaryVariable configHome_{"XDG_CONFIG_HOME", config_.path().toUtf8().constData()};
    fakes::RecordingLog recording_;
    FailingSink failingSink_;
    Log failing_{failingSink_};
    int copies_ = 0;
};

TEST_F(PreferencesFileTest, KeepsTexts) {
    auto defaults = open();
    for (const std::string text : {"fast", "TC0P", "VTT ", " x", "a,b", "a, \"b\"", "é 温度 °", "50%", "a=b",
                                   "a;b", "back\\slash", "@Invalid()", "line\nline", "7", "true"}) {
        defaults.setText("KelvinbarSamplingRate", text);
        EXPECT_THAT(onDisk(defaults)->text("KelvinbarSamplingRate"), Optional(text));
    }
    EXPECT_THAT(recording_.lines(), IsEmpty());
}

TEST_F(PreferencesFileTest, KeepsLists) {
    auto defaults = open();
    const std::vector<TextList> lists{
        {"TC0P"},
        {"VTT "},
        {"TC0P", "VTT ", "F0Ac"},
        {"a,b"},
        {"a,b", "c"},
        {"say \"a\"", "b"},
        {"é", "温度"},
        {"b", "a", "b"},
        {"@x", "y"},
        {"back\\slash", "b"},
        {"a", "", "b"},
        {"x=y", "z"},
        {"a;b", "c"},
        {" a", "b "},
        {"12", "13"},
    };
    for (const TextList& list : lists) {
        defaults.setTextList("KelvinbarMenuBarKeys", list);
        EXPECT_THAT(onDisk(defaults)->textList("KelvinbarMenuBarKeys"), Optional(list));
    }
    EXPECT_THAT(recording_.lines(), IsEmpty());
}

TEST_F(PreferencesFileTest, KeepsNumbers) {
    auto defaults = open();
    for (const double number : {462.0, 690.0, 0.1, 1e-7, 1400.25, 1.0 / 3, -5.5, 1e15}) {
        defaults.setNumber("KelvinbarManualPopoverWidth", number);
        EXPECT_DOUBLE_EQ(onDisk(defaults)->number("KelvinbarManualPopoverWidth"), number);
    }
}

TEST_F(PreferencesFileTest, KeepsEveryPreference) {
    auto defaults = open();
    storeSamplingRate(defaults, SMCSamplingRate::fast);
    storeDisplayMode(defaults, SMCWindowDisplayMode::dynamic);
    storeManualPopoverSize(defaults, {500.5, 786});
    storeMenuBarKeys(defaults, {"TC0P", "F0Ac"});
    storeHiddenKeys(defaults, {"VP0R"});
    const auto stored = onDisk(defaults);
    EXPECT_THAT(stored->text("KelvinbarSamplingRate"), Optional(std::string("fast")));
    EXPECT_THAT(stored->text("KelvinbarWindowDisplayMode"), Optional(std::string("dynamic")));
    EXPECT_EQ(stored->number("KelvinbarManualPopoverWidth"), 500.5);
    EXPECT_EQ(stored->number("KelvinbarManualPopoverHeight"), 786);
    EXPECT_THAT(stored->textList("KelvinbarMenuBarKeys"), Optional(TextList{"TC0P", "F0Ac"}));
    EXPECT_THAT(stored->text("KelvinbarMenuBarKey"), Optional(std::string("TC0P")));
    EXPECT_THAT(stored->textList("KelvinbarHiddenKeys"), Optional(TextList{"VP0R"}));
}

TEST_F(PreferencesFileTest, FindsNothingUnderMissingKeys) {
    auto defaults = open();
    defaults.setText("other", "x");
    EXPECT_EQ(defaults.text("missing"), std::nullopt);
    EXPECT_EQ(defaults.textList("missing"), std::nullopt);
    EXPECT_EQ(defaults.number("missing"), 0);
}

TEST_F(PreferencesFileTest, FindsNoTextInAList) {
    auto defaults = open();
    defaults.setTextList("key", {"a", "b"});
    EXPECT_EQ(defaults.text("key"), std::nullopt);
    EXPECT_EQ(onDisk(defaults)->text("key"), std::nullopt);
}

TEST_F(PreferencesFileTest, FindsNoNumberInATextOrAList) {
    auto defaults = open();
    defaults.setText("text", "wide");
    defaults.setTextList("list", {"1", "2"});
    const auto stored = onDisk(defaults);
    for (const auto* const key : {"text", "list"}) {
        EXPECT_EQ(defaults.number(key), 0) << key;
        EXPECT_EQ(stored->number(key), 0) << key;
    }
}

TEST_F(PreferencesFileTest, FindsANumberInATextThatIsOne) {
    auto defaults = open();
    defaults.setText("text", "500.5");
    EXPECT_EQ(defaults.number("text"), 500.5);
    EXPECT_EQ(onDisk(defaults)->number("text"), 500.5);
}

TEST_F(PreferencesFileTest, IgnoresValuesOfOtherTypes) {
    write("[General]\nkey=@ByteArray(abc)\nsize=@Size(4 5)\n");
    const auto defaults = open();
    for (const auto* const key : {"key", "size"}) {
        EXPECT_EQ(defaults.text(key), std::nullopt) << key;
        EXPECT_EQ(defaults.textList(key), std::nullopt) << key;
        EXPECT_EQ(defaults.number(key), 0) << key;
    }
}

TEST_F(PreferencesFileTest, KeepsAKeyThatEndsWithASpace) {
    auto defaults = open();
    defaults.setText("VTT ", "a");
    defaults.setText("VTT", "b");
    EXPECT_THAT(onDisk(defaults)->text("VTT "), Optional(std::string("a")));
    EXPECT_THAT(onDisk(defaults)->text("VTT"), Optional(std::string("b")));
}

TEST_F(PreferencesFileTest, SavesBesideKeysThatItCannotWrite) {
    write("[General]\n=1\n/a=2\nb\\\\c=3\nd=4\n");
    PreferencesFile defaults = open();
    defaults.setText("Key", "text");
    EXPECT_TRUE(defaults.flush(10s));
    EXPECT_EQ(bytes(), "[General]\nKey=text\nd=4\n");
}

TEST_F(PreferencesFileTest, SavesBesideListsThatItReadsAsOthers) {
    write("[General]\na=@b, c\nd=e, \"f\\0g\"\n");
    PreferencesFile defaults = open();
    defaults.setText("Key", "text");
    EXPECT_TRUE(defaults.flush(10s));
    EXPECT_EQ(open().text("Key"), "text");
}

TEST_F(PreferencesFileTest, Removes) {
    auto defaults = open();
    defaults.setTextList("KelvinbarMenuBarKeys", {"TC0P"});
    defaults.setText("KelvinbarMenuBarKey", "TC0P");
    defaults.remove("KelvinbarMenuBarKeys");
    EXPECT_EQ(defaults.textList("KelvinbarMenuBarKeys"), std::nullopt);
    EXPECT_EQ(onDisk(defaults)->textList("KelvinbarMenuBarKeys"), std::nullopt);
    EXPECT_THAT(onDisk(defaults)->text("KelvinbarMenuBarKey"), Optional(std::string("TC0P")));
    EXPECT_FALSE(bytes().contains("KelvinbarMenuBarKeys"));
}

TEST_F(PreferencesFileTest, HasEveryChangeOnDiskSoon) {
    auto defaults = open();
    defaults.setText("KelvinbarSamplingRate", "fast");
    EXPECT_TRUE(waitFor([&] { return QFileInfo::exists(path()); }));
    flush(defaults);
    EXPECT_THAT(bytes().toStdString(), HasSubstr("KelvinbarSamplingRate=fast"));
    defaults.setTextList("KelvinbarHiddenKeys", {"TC0P", "TC1P"});
    flush(defaults);
    EXPECT_THAT(bytes().toStdString(), HasSubstr("KelvinbarHiddenKeys=TC0P, TC1P"));
    defaults.setNumber("KelvinbarManualPopoverWidth", 500.5);
    flush(defaults);
    EXPECT_THAT(bytes().toStdString(), HasSubstr("KelvinbarManualPopoverWidth=500.5"));
    defaults.remove("KelvinbarSamplingRate");
    flush(defaults);
    EXPECT_FALSE(bytes().contains("KelvinbarSamplingRate"));
}

TEST_F(PreferencesFileTest, TwoObjectsLoseNoKeyOfEachOther) {
    auto first = open();
    auto second = open();
    first.setText("a", "1");
    second.setText("b", "2");
    first.setText("c", "3");
    flush(first);
    second.remove("a");
    const auto stored = onDisk(second);
    EXPECT_EQ(stored->text("a"), std::nullopt);
    EXPECT_THAT(stored->text("b"), Optional(std::string("2")));
    EXPECT_THAT(stored->text("c"), Optional(std::string("3")));
}

TEST_F(PreferencesFileTest, LosesNoKeyOfAnotherProcess) {
    auto defaults = open();
    defaults.setText("first", "ours");
    flush(defaults);
    const auto writer = startWriter("theirs", 3);
    ASSERT_TRUE(writer->waitForFinished());
    EXPECT_EQ(writer->exitCode(), 0);
    defaults.setText("last", "ours");
    const auto stored = onDisk(defaults);
    for (const auto* const key : {"theirs0", "theirs1", "theirs2"}) {
        EXPECT_THAT(stored->text(key), Optional(std::string("theirs"))) << key;
    }
    EXPECT_THAT(stored->text("first"), Optional(std::string("ours")));
    EXPECT_THAT(stored->text("last"), Optional(std::string("ours")));
    EXPECT_THAT(recording_.lines(), IsEmpty());
}

TEST_F(PreferencesFileTest, IsInTheUsersFolderForPreferences) {
    const auto writer = startWriter("key", 1);
    ASSERT_TRUE(writer->waitForFinished());
    EXPECT_EQ(writer->exitCode(), 0);
    EXPECT_TRUE(QFileInfo::exists(config_.filePath("kelvinbar/test-name.conf")));
}

TEST_F(PreferencesFileTest, TouchesNoFileUntilSomethingIsWritten) {
    {
        const auto defaults = open();
        EXPECT_EQ(defaults.text("key"), std::nullopt);
    }
    EXPECT_FALSE(QFileInfo::exists(path()));
    const QByteArray content = "; a note of the user's\n[General]\nkey =  value\n";
    write(content);
    const QDateTime time = QDateTime::currentDateTimeUtc().addDays(-1);
    {
        QFile file(path());
        ASSERT_TRUE(file.open(QFile::ReadWrite));
        ASSERT_TRUE(file.setFileTime(time, QFile::FileModificationTime));
    }
    const QDateTime earlier = QFileInfo(path()).lastModified();
    {
        const auto defaults = open();
        EXPECT_THAT(defaults.text("key"), Optional(std::string("value")));
    }
    EXPECT_EQ(bytes(), content);
    EXPECT_EQ(QFileInfo(path()).lastModified(), earlier);
    EXPECT_THAT(recording_.lines(), IsEmpty());
}

TEST_F(PreferencesFileTest, DoesNotReportAMissingOrEmptyFile) {
    open();
    write("");
    auto defaults = open();
    defaults.setText("key", "value");
    flush(defaults);
    EXPECT_THAT(recording_.lines(), IsEmpty());
    EXPECT_FALSE(QFileInfo::exists(path() + ".damaged"));
}

class DamagedUserDefaultsTest : public PreferencesFileTest, public testing::WithParamInterface<QByteArray> {};

TEST_P(DamagedUserDefaultsTest, ReturnsDefaultsAndReportsOnce) {
    write(GetParam());
    const auto defaults = open();
    const Preferences preferences = loadPreferences(defaults);
    EXPECT_EQ(preferences.samplingRate, SMCSamplingRate::medium);
    EXPECT_EQ(preferences.displayMode, SMCWindowDisplayMode::fixed);
    EXPECT_EQ(preferences.manualPopoverSize.width, 462);
    EXPECT_EQ(preferences.manualPopoverSize.height, 690);
    EXPECT_THAT(preferences.menuBarKeys, IsEmpty());
    EXPECT_THAT(preferences.hiddenKeys, IsEmpty());
    EXPECT_THAT(recording_.lines(), ElementsAre(HasSubstr(path().toStdString())));
    EXPECT_EQ(bytes(), GetParam());
}

TEST_P(DamagedUserDefaultsTest, IsKeptAsideBeforeItIsReplaced) {
    write(GetParam());
    auto defaults = open();
    EXPECT_FALSE(QFileInfo::exists(path() + ".damaged"));
    defaults.setText("KelvinbarSamplingRate", "fast");
    flush(defaults);
    EXPECT_EQ(bytes(path() + ".damaged"), GetParam());
    defaults.setText("KelvinbarWindowDisplayMode", "dynamic");
    flush(defaults);
    EXPECT_EQ(bytes(path() + ".damaged"), GetParam());
    EXPECT_THAT(recording_.lines(), SizeIs(1));
    const auto stored = onDisk(defaults);
    EXPECT_THAT(stored->text("KelvinbarSamplingRate"), Optional(std::string("fast")));
    EXPECT_THAT(stored->text("KelvinbarWindowDisplayMode"), Optional(std::string("dynamic")));
}

TEST_P(DamagedUserDefaultsTest, IsKeptAsideBeforeSomethingIsRemoved) {
    write(GetParam());
    auto defaults = open();
    defaults.remove("KelvinbarMenuBarKeys");
    flush(defaults);
    EXPECT_EQ(bytes(path() + ".damaged"), GetParam());
    EXPECT_THAT(recording_.lines(), SizeIs(1));
}

/// Bytes that are not text and contain no "=".
static QByteArray binaryBytes() {
    QByteArray bytes("\x89PNG\r\n\x1a\n");
    for (int value = 0; value < 2048; ++value) {
        const auto byte = static_cast<char>(value * 37 % 251);
        bytes.append(byte == '=' ? '\0' : byte);
    }
    return bytes;
}

INSTANTIATE_TEST_SUITE_P(Contents, DamagedUserDefaultsTest,
                         testing::Values(binaryBytes(), QByteArray(4096, '\0'),
                                         QByteArray("these are\nno preferences\n"),
                                         QByteArray("[General]\nKelvinbarSamplingRate\n"),
                                         QByteArray("[General\nthese are\nno preferences\n"),
                                         QByteArray("[Gen\0\xff\xfe\x89PNG", 11),
                                         // A list of 1.6 thousand million texts
                                         QByteArray("[General]\n"
                                                    "KelvinbarMenuBarKeys=@Variant(\\0\\0\\0\\valid)\n")));

TEST_F(PreferencesFileTest, KeepsTheLatestDamagedFileAside) {
    write("[damaged\n");
    open().setText("a", "1");
    write("[damaged again\n");
    open().setText("a", "2");
    EXPECT_EQ(bytes(path() + ".damaged"), "[damaged again\n");
}

TEST_F(PreferencesFileTest, ARepairedFileKeepsNoGarbage) {
    write("[General]\nKelvinbarSamplingRate=fast\nKelvinbarMenuBarKeys=TC0P, F0Ac\nrubbish=1\n"
          "Kelvinbar\xff=1\n\x89PNG=\x01\x02\nKelvinbarWindowDisplayMode=\x89\xff\x01\n"
          "KelvinbarManualPopoverWidth=@Size(4 5)\n[Other]\nKelvinbarMenuBarKey=TC0P\nno preference\n");
    auto defaults = open();
    EXPECT_THAT(defaults.text("KelvinbarSamplingRate"), Optional(std::string("fast")));
    EXPECT_EQ(defaults.text("rubbish"), std::nullopt);
    defaults.setText("KelvinbarHiddenKeys", "VP0R");
    flush(defaults);
    EXPECT_EQ(bytes(), "[General]\nKelvinbarHiddenKeys=VP0R\nKelvinbarMenuBarKeys=TC0P, F0Ac\n"
                       "KelvinbarSamplingRate=fast\n");
}

TEST_F(PreferencesFileTest, AnIntactFileKeepsWhatIsNotOurs) {
    write("[General]\nnote=mine\n");
    auto defaults = open();
    defaults.setText("KelvinbarSamplingRate", "fast");
    flush(defaults);
    EXPECT_EQ(bytes(), "[General]\nKelvinbarSamplingRate=fast\nnote=mine\n");
}

// Files of other kinds, and links

/// Has a link to `target` in place of the file.
class LinkedPreferences : public PreferencesFileTest {
  protected:
    void link(const QString& target) {
        QDir().mkpath(config_.filePath("kelvinbar"));
        ASSERT_TRUE(QFile::link(target, path()));
    }

    /// Preferences that cannot be read and not be written.
    void expectNothingIsDone() {
        auto defaults = open();
        EXPECT_EQ(defaults.text("a"), std::nullopt);
        defaults.setText("a", "1");
        EXPECT_FALSE(defaults.flush(10s));
        EXPECT_THAT(recording_.lines(), ElementsAre(HasSubstr("cannot be read: it is no regular file"),
                                                    HasSubstr("cannot be written")));
    }
};

TEST_F(LinkedPreferences, ThatArePipesAreNeitherReadNorReplaced) {
    QDir().mkpath(config_.filePath("kelvinbar"));
    ASSERT_EQ(::mkfifo(path().toUtf8().constData(), 0600), 0);
    expectNothingIsDone();

    struct stat status{};

    ASSERT_EQ(::stat(path().toUtf8().constData(), &status), 0);
    EXPECT_TRUE(S_ISFIFO(status.st_mode));
}

TEST_F(LinkedPreferences, ThatLeadToADeviceAreNeitherReadNorReplaced) {
    link("/dev/zero");
    expectNothingIsDone();
    EXPECT_EQ(QFileInfo(path()).symLinkTarget(), "/dev/zero");

    struct stat status{};

    ASSERT_EQ(::stat("/dev/zero", &status), 0);
    EXPECT_TRUE(S_ISCHR(status.st_mode));
}

TEST_F(LinkedPreferences, ThatLeadToAFileAreWrittenThere) {
    QFile kept(config_.filePath("kept.conf"));
    ASSERT_TRUE(kept.open(QFile::WriteOnly));
    kept.write("[General]\na=1\n");
    kept.close();
    link("../kept.conf");
    auto defaults = open();
    EXPECT_THAT(defaults.text("a"), Optional(std::string("1")));
    defaults.setText("a", "2");
    EXPECT_TRUE(defaults.flush(10s));
    EXPECT_TRUE(QFileInfo(path()).isSymLink());
    EXPECT_EQ(bytes(config_.filePath("kept.conf")), "[General]\na=2\n");
}

TEST_F(LinkedPreferences, ThatLeadToNothingMakeAFileInAFolderThatIsThere) {
    link(config_.filePath("new.conf"));
    auto defaults = open();
    defaults.setText("a", "1");
    EXPECT_TRUE(defaults.flush(10s));
    EXPECT_TRUE(QFileInfo(path()).isSymLink());
    EXPECT_EQ(bytes(config_.filePath("new.conf")), "[General]\na=1\n");
}

TEST_F(LinkedPreferences, ThatLeadIntoAMissingFolderAreNotWritten) {
    link(config_.filePath("missing/new.conf"));
    auto defaults = open();
    defaults.setText("a", "1");
    EXPECT_FALSE(defaults.flush(10s));
    EXPECT_TRUE(QFileInfo(path()).isSymLink());
    EXPECT_FALSE(QFileInfo::exists(config_.filePath("missing")));
}

TEST_F(PreferencesFileTest, LivesWithAPlaceThatCannotBeWritten) {
    QFile file(config_.filePath("kelvinbar"));
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    file.close();
    auto defaults = open();
    EXPECT_EQ(loadPreferences(defaults).samplingRate, SMCSamplingRate::medium);
    defaults.setText("KelvinbarSamplingRate", "fast");
    defaults.setNumber("KelvinbarManualPopoverWidth", 500);
    defaults.setTextList("KelvinbarHiddenKeys", {"TC0P"});
    defaults.remove("KelvinbarHiddenKeys");
    flush(defaults);
    EXPECT_THAT(recording_.lines(), ElementsAre(HasSubstr(path().toStdString() + " cannot be written")));
    EXPECT_EQ(defaults.text("KelvinbarSamplingRate"), "fast");
    EXPECT_TRUE(QFileInfo(config_.filePath("kelvinbar")).isFile());
}

TEST_F(PreferencesFileTest, WarnsOnceThatNothingIsSavedWhereADamagedFileCannotBeKept) {
    write("[damaged\n");
    QDir().mkpath(path() + ".damaged/content");
    auto defaults = open();
    defaults.setText("a", "1");
    flush(defaults);
    defaults.setText("a", "2");
    flush(defaults);
    EXPECT_EQ(bytes(), "[damaged\n");
    EXPECT_THAT(recording_.lines(),
                ElementsAre(HasSubstr("are damaged"),
                            HasSubstr("nothing is saved: damaged preferences cannot be kept as " +
                                      path().toStdString() + ".damaged")));
}

TEST_F(PreferencesFileTest, LogsWhereItIsAndHowManyValuesItHolds) {
    write("[General]\na=1\nb=2\n");
    fakes::RecordingLog recording("info");
    const PreferencesFile defaults("test-name", recording.log);
    EXPECT_THAT(recording.lines(),
                ElementsAre("kelvinbar: preferences info: " + path().toStdString() + " holds 2 values"));
}

TEST_F(PreferencesFileTest, LogsValuesThatItIgnores) {
    write("[General]\nlist=a, b\nword=many\n");
    fakes::RecordingLog recording("info");
    const PreferencesFile defaults("test-name", recording.log);
    EXPECT_EQ(defaults.text("list"), std::nullopt);
    EXPECT_EQ(defaults.number("word"), 0);
    EXPECT_EQ(defaults.text("missing"), std::nullopt);
    EXPECT_THAT(recording.lines(),
                ElementsAre(HasSubstr("holds 2 values"),
                            "kelvinbar: preferences info: list is ignored: its value is not a text",
                            "kelvinbar: preferences info: word is ignored: its value is not a number"));
}

TEST_F(PreferencesFileTest, LogsWhereADamagedFileIsKept) {
    write("[damaged\n");
    fakes::RecordingLog recording("preferences=info");
    PreferencesFile("test-name", recording.log).setText("a", "1");
    EXPECT_THAT(recording.lines(),
                ElementsAre(HasSubstr(" holds 0 values"), HasSubstr("are damaged"),
                            "kelvinbar: preferences info: damaged preferences are kept as " +
                                path().toStdString() + ".damaged"));
}

TEST_F(PreferencesFileTest, LogsEveryChangeForDebugging) {
    fakes::RecordingLog recording("preferences=debug");
    PreferencesFile defaults("test-name", recording.log);
    defaults.setText("a", "1");
    defaults.remove("a");
    flush(defaults);
    EXPECT_THAT(recording.lines(),
                ElementsAre(HasSubstr("holds 0 values"), "kelvinbar: preferences debug: a is written",
                            "kelvinbar: preferences debug: a is removed"));
}

TEST_F(PreferencesFileTest, ReportsAPlaceInWhichNothingCanBeRemoved) {
    QDir().mkpath(path()); // a folder in place of the file
    auto defaults = open();
    defaults.remove("KelvinbarHiddenKeys");
    flush(defaults);
    EXPECT_THAT(recording_.lines(), ElementsAre(HasSubstr(path().toStdString() + " cannot be read"),
                                                HasSubstr(path().toStdString() + " cannot be written")));
}

TEST_F(PreferencesFileTest, TwoProcessesLoseNoKeyOfEachOther) {
    constexpr int count = 40;
    auto defaults = open();
    const auto writer = startWriter("theirs", count);
    int written = 0;
    while (!writer->waitForFinished(1) && written < 10'000) {
        defaults.setText("ours" + std::to_string(written % count), "ours");
        flush(defaults);
        ++written;
    }
    ASSERT_TRUE(hasEnded(*writer));
    EXPECT_EQ(writer->exitCode(), 0);
    defaults.setText("last", "ours");
    const auto stored = onDisk(defaults);
    for (int number = 0; number < count; ++number) {
        EXPECT_THAT(stored->text("theirs" + std::to_string(number)), Optional(std::string("theirs")))
            << number;
        if (number < written) {
            EXPECT_THAT(stored->text("ours" + std::to_string(number)), Optional(std::string("ours")))
                << number;
        }
    }
    EXPECT_GT(written, 0);
    EXPECT_THAT(stored->text("last"), Optional(std::string("ours")));
    EXPECT_THAT(recording_.lines(), IsEmpty());
}

/// A lock as another process left it.
static QByteArray lockOf(const QByteArray& process, const QByteArray& host) {
    return process + "\nkelvinbar\n" + host + "\n\n\n";
}

TEST_F(PreferencesFileTest, NeverWaitsForAnotherProcessInACall) {
    write("[General]\na=1\n");
    auto defaults = open();
    const auto holder = startTurnHolder();
    ASSERT_EQ(::kill(static_cast<pid_t>(holder->processId()), SIGSTOP), 0);
    defaults.setText("a", "2");
    EXPECT_THAT(defaults.text("a"), Optional(std::string("2")));
    EXPECT_FALSE(defaults.flush(0ms));
    EXPECT_FALSE(defaults.flush(10s));
    EXPECT_EQ(bytes(), "[General]\na=1\n");
    holder->kill();
    EXPECT_TRUE(hasEnded(*holder));
    EXPECT_TRUE(defaults.flush(10s));
    EXPECT_EQ(bytes(), "[General]\na=2\n");
    EXPECT_THAT(recording_.lines(), ElementsAre(HasSubstr("are being written by another process")));
}

TEST_F(PreferencesFileTest, TakesTheTurnOfAProcessThatIsGone) {
    auto defaults = open();
    const auto holder = startTurnHolder();
    holder->kill();
    EXPECT_TRUE(holder->waitForFinished());
    ASSERT_TRUE(QFileInfo::exists(path() + ".turn"));
    defaults.setText("a", "1");
    EXPECT_TRUE(defaults.flush(10s));
    EXPECT_THAT(bytes().toStdString(), HasSubstr("a=1"));
    EXPECT_THAT(recording_.lines(), IsEmpty());
}

TEST_F(PreferencesFileTest, TakesTheTurnOfAnotherMachineWhenItIsOld) {
    write("");
    auto defaults = open();
    QFile lock(path() + ".turn");
    ASSERT_TRUE(lock.open(QFile::WriteOnly));
    lock.write(lockOf("1", "another-machine"));
    lock.close();
    defaults.setText("a", "1");
    EXPECT_FALSE(defaults.flush(10s));
    EXPECT_EQ(bytes(), "");
    ASSERT_TRUE(lock.open(QFile::ReadWrite));
    ASSERT_TRUE(
        lock.setFileTime(QDateTime::currentDateTimeUtc().addSecs(-3600), QFile::FileModificationTime));
    lock.close();
    EXPECT_TRUE(defaults.flush(10s));
    EXPECT_THAT(bytes().toStdString(), HasSubstr("a=1"));
}

TEST_F(PreferencesFileTest, SavesWhatCouldNotBeSavedWhenThePlaceIsThereAgain) {
    QFile obstacle(config_.filePath("kelvinbar"));
    ASSERT_TRUE(obstacle.open(QFile::WriteOnly));
    obstacle.close();
    fakes::RecordingLog recording("preferences=warning");
    PreferencesFile defaults("test-name", recording.log, {.retries = {10ms}, .atEnd = 100ms});
    defaults.setText("a", "1");
    defaults.setText("b", "1");
    EXPECT_FALSE(defaults.flush(10s));
    defaults.setText("b", "2");
    ASSERT_TRUE(obstacle.remove());
    EXPECT_TRUE(waitFor([&] { return QFileInfo::exists(path()); }));
    EXPECT_EQ(bytes(), "[General]\na=1\nb=2\n");
    EXPECT_THAT(recording.lines(), SizeIs(1));
}

TEST_F(PreferencesFileTest, SavesWhatIsPendingWhenItIsDestroyed) {
    open().setText("a", "1");
    EXPECT_EQ(bytes(), "[General]\na=1\n");
}

TEST_F(PreferencesFileTest, ReportsChangesThatAreLostAtTheEnd) {
    {
        auto defaults = open();
        QDir().mkpath(path()); // a folder in place of the file
        defaults.setText("a", "1");
    }
    EXPECT_THAT(recording_.lines(), ElementsAre(HasSubstr("cannot be written"),
                                                HasSubstr("the last changes of the preferences are lost")));
}

TEST_F(PreferencesFileTest, KeepsTheFileWhenTheDiskIsFull) {
    write("[General]\na=1\n");
    auto defaults = open();
    {
        const FileSizeLimit limit(4096);
        defaults.setText("long", std::string(10'000, 'x'));
        defaults.setText("a", "2");
        EXPECT_FALSE(defaults.flush(10s));
    }
    EXPECT_EQ(bytes(), "[General]\na=1\n");
    EXPECT_THAT(recording_.lines(), ElementsAre(HasSubstr("cannot be written")));
    EXPECT_TRUE(defaults.flush(10s));
    EXPECT_EQ(bytes().size(), std::string("[General]\na=2\nlong=\n").size() + 10'000);
}

TEST_F(PreferencesFileTest, IsWholeAfterEveryKill) {
    constexpr int kills = 30; // and many more by scripts/check-reliability.sh
    qsizetype lines = 0;
    for (int kill = 0; kill < kills; ++kill) {
        const QString prefix = QString("%1-").arg(kill);
        const QByteArray lastKey = (prefix + QString::number(kill % 3)).toUtf8();
        const auto writer = startWriter(prefix, 1'000'000);
        ASSERT_TRUE(waitFor([&] { return QFileInfo::exists(path()) && bytes().contains(lastKey); })) << kill;
        writer->kill();
        ASSERT_TRUE(writer->waitForFinished());
        ASSERT_TRUE(bytes().endsWith('\n')) << kill;
        ASSERT_GT(bytes().count('\n'), std::exchange(lines, bytes().count('\n'))) << kill;
    }
    const auto defaults = open();
    for (int kill = 0; kill < kills; ++kill) {
        const std::string prefix = std::to_string(kill) + "-";
        EXPECT_THAT(defaults.text(prefix + "0"), Optional(prefix));
    }
    EXPECT_THAT(recording_.lines(), IsEmpty());
}

} // namespace
} // namespace kelvinbar::preferences_file_test
