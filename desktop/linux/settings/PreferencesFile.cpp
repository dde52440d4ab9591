#include "desktop/linux/settings/PreferencesFile.h"

#include "desktop/linux/files/RegularFile.h"
#include "desktop/linux/settings/SerializedValues.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QRegularExpression>
#include <QSaveFile>
#include <QSettings>
#include <QStandardPaths>
#include <QStringList>
#include <QTemporaryDir>
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <optional>
#include <string>
#include <thread>
#include <utility>

namespace kelvinbar {

namespace {

using namespace std::chrono_literals;

/// How long one attempt waits for another process to finish writing. Shorter than the wait at the program's
/// end, so that the attempt made then can still succeed.
constexpr std::chrono::milliseconds turnTimeout = 500ms;
constexpr std::chrono::milliseconds turnPolling = 2ms;

/// Age at which a lock is void if its owner cannot be looked for, as on another machine or if it was killed
/// before it left its name. The lock of a process that runs on this machine is never void. A write takes
/// milliseconds.
constexpr std::chrono::milliseconds staleTurnAge = 2s;

/// In bytes. Larger than any preferences.
constexpr std::size_t largestFile = std::size_t{16} * 1024 * 1024;

using Values = QMap<QString, QVariant>;

std::string described(const QString& path, const char* what) {
    return "the preferences in " + path.toStdString() + " " + what;
}

std::filesystem::path fileAt(const QString& path) { return path.toStdString(); }

/// Empty if there is no file, no value if it cannot be read.
std::optional<QByteArray> contentOf(const QString& path) {
    if (kindOf(fileAt(path)) == FileKind::missing) return QByteArray();
    const auto content = regularContent(fileAt(path), largestFile);
    return content ? std::optional(QByteArray::fromStdString(*content)) : std::nullopt;
}

/// Replaces the file as a whole, or the one that a link leads to.
bool writeFile(const QString& path, const QByteArray& content) {
    const auto target = replaceableFile(fileAt(path));
    if (!target) return false;
    QSaveFile file(QString::fromStdString(target->string()));
    // Committing does not notice a disk that is full; flushing does.
    return file.open(QFile::WriteOnly) && file.write(content) == content.size() && file.flush() &&
           file.commit();
}

/// QSettings reads keys from a file that was edited by hand which it would write as others, or not at all.
bool isWritableKey(const QString& key) {
    return !key.isEmpty() && !key.startsWith('/') && !key.endsWith('/') && !key.contains("//");
}

struct StoredPreferences {
    Values values;
    bool isDamaged = false; ///< the values are what could still be read
};

/// QSettings reads a list with an element that begins with "@" as one of variants.
bool isList(const QVariant& value) {
    return value.typeId() == QMetaType::QStringList || value.typeId() == QMetaType::QVariantList;
}

/// The value as QSettings stores it, which keeps no other types of ours.
QStringList textsOf(const QVariant& value) {
    return isList(value) ? value.toStringList() : QStringList(value.toString());
}

bool isOurKey(const QString& key) {
    static const QRegularExpression form("^Kelvinbar[A-Za-z]+$");
    return form.match(key).hasMatch();
}

bool isOurValue(const QVariant& value) {
    static const QRegularExpression garbage(R"([\x{FFFD}\x00-\x08\x0A-\x1F\x7F])");
    const bool isText = value.typeId() == QMetaType::QString || isList(value);
    return isText && textsOf(value).filter(garbage).isEmpty();
}

/// In a damaged file, anything may look like a value.
void removeGarbage(Values& values) {
    for (auto value = values.begin(); value != values.end();) {
        value = isOurKey(value.key()) && isOurValue(*value) ? std::next(value) : values.erase(value);
    }
}

StoredPreferences valuesOf(const QSettings& settings) {
    StoredPreferences stored;
    const QStringList keys = settings.allKeys(); // also makes QSettings read the file
    for (const QString& key : keys) {
        if (isWritableKey(key)) stored.values.insert(key, settings.value(key));
    }
    stored.isDamaged = settings.status() == QSettings::FormatError;
    if (stored.isDamaged) removeGarbage(stored.values);
    return stored;
}

/// Of the file with this content.
StoredPreferences storedIn(const QString& path, const QByteArray& content) {
    if (holdsSerializedValues(content)) return {.values = {}, .isDamaged = true};
    return valuesOf(QSettings(path, QSettings::NativeFormat));
}

bool holdSameTexts(const Values& left, const Values& right) {
    return left.keys() == right.keys() &&
           std::equal(left.begin(), left.end(), right.begin(),
                      [](const auto& one, const auto& other) { return textsOf(one) == textsOf(other); });
}

/// Converts between values and the format of QSettings, which works on files only. The files are new each
/// time: QSettings remembers files by name, and what it remembers may be older than the file.
class SettingsFormat {
  public:
    /// No value if there is no room for temporary files.
    [[nodiscard]] std::optional<StoredPreferences> parsed(const QByteArray& content) {
        const QString path = nextPath();
        QFile file(path);
        if (!file.open(QFile::WriteOnly) || file.write(content) != content.size() || !file.flush())
            return std::nullopt;
        return storedIn(path, content);
    }

    /// The same.
    [[nodiscard]] std::optional<QByteArray> formatted(const Values& values) {
        const QString path = nextPath();
        {
            QSettings settings(path, QSettings::NativeFormat);
            for (auto value = values.begin(); value != values.end(); ++value) {
                settings.setValue(value.key(), *value);
            }
        }
        const auto content = contentOf(path);
        // QSettings does not notice a disk that is full.
        const auto readBack = content ? parsed(*content) : std::nullopt;
        return readBack && holdSameTexts(readBack->values, values) ? content : std::nullopt;
    }

  private:
    QString nextPath() { return folder_.filePath(QString("%1.conf").arg(++lastNumber_)); }

    QTemporaryDir folder_;
    int lastNumber_ = 0;
};

void apply(const PreferenceChanges& changes, Values& values) {
    for (auto change = changes.begin(); change != changes.end(); ++change) {
        if (change->isValid()) {
            values.insert(change.key(), *change);
        } else {
            values.remove(change.key());
        }
    }
}

bool keepAside(const QString& path, const QString& copy) {
    QFile::remove(copy);
    return QFile::copy(path, copy);
}

/// Adds the changes to what the file holds by now. Only one process at a time may do this.
WriteReport mergeInto(const QString& path, const PreferenceChanges& changes) {
    WriteReport failure{false, described(path, "cannot be written")};
    SettingsFormat format;
    const auto content = contentOf(path);
    auto stored = content ? format.parsed(*content) : std::nullopt;
    if (!stored) return failure;
    const QString copy = path + ".damaged";
    if (stored->isDamaged && !keepAside(path, copy))
        return {false, "nothing is saved: damaged preferences cannot be kept as " + copy.toStdString()};
    apply(changes, stored->values);
    const auto newContent = format.formatted(stored->values);
    if (!newContent || (*newContent != *content && !writeFile(path, *newContent))) return failure;
    return {true, stored->isDamaged ? "damaged preferences are kept as " + copy.toStdString() : ""};
}

/// Looks more often than the lock itself would, which can miss its turn when others write a lot.
bool takeTurn(QLockFile& turn) {
    const QDeadlineTimer deadline(turnTimeout);
    while (!turn.tryLock(0)) {
        if (turn.error() != QLockFile::LockFailedError || deadline.hasExpired()) return false;
        std::this_thread::sleep_for(turnPolling);
    }
    return true;
}

/// The same, when it is this process's turn. Any thread.
WriteReport writeInTurn(const QString& path, const PreferenceChanges& changes) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QLockFile turn(path + ".turn");
    turn.setStaleLockTime(static_cast<int>(staleTurnAge.count()));
    if (takeTurn(turn)) return mergeInto(path, changes);
    const bool isOthersTurn = turn.error() == QLockFile::LockFailedError;
    return {false,
            described(path, isOthersTurn ? "are being written by another process" : "cannot be written")};
}

} // namespace

/// Little at the end: the program has flushed its preferences before, and is to quit within a second.
WriterPatience standardWriterPatience() { return {.retries = {1s, 2s, 5s, 10s, 30s, 60s}, .atEnd = 100ms}; }

QString preferencesPath(const QString& program) {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return QString("%1/kelvinbar/%2.conf").arg(folder, program);
}

PreferencesFile::PreferencesFile(const QString& name, Log& log, WriterPatience patience)
    : VariantUserDefaults(log)
    , path_(preferencesPath(name))
    , writer_([path = path_](const PreferenceChanges& changes) { return writeInTurn(path, changes); },
              std::move(patience), log) {
    const char* const complaint = readFile();
    log.write(LogCategory::preferences, LogLevel::info,
              [&] { return path_.toStdString() + " holds " + std::to_string(values_.size()) + " values"; });
    if (complaint == nullptr) return;
    log.write(LogCategory::preferences, LogLevel::warning, [&] { return described(path_, complaint); });
}

/// Returns what is wrong with the file; null if nothing is.
const char* PreferencesFile::readFile() {
    const FileKind kind = kindOf(fileAt(path_));
    if (kind == FileKind::other) return "cannot be read: it is no regular file";
    if (kind == FileKind::missing) return nullptr;
    const auto content = contentOf(path_);
    if (!content) return "cannot be read";
    StoredPreferences stored = storedIn(path_, *content);
    values_ = std::move(stored.values);
    return stored.isDamaged ? "are damaged" : nullptr;
}

void PreferencesFile::storeValue(const QString& key, const QVariant& value) {
    apply({{key, value}}, values_);
    writer_.add(key, value);
}

} // namespace kelvinbar
