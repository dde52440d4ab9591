#pragma once

#include "catalogue/SMCReading.h"
#include "store/ReadingRanges.h"

#include <QObject>
#include <QString>
#include <optional>
#include <qqmlregistration.h>

namespace kelvinbar {

class KelvinbarStore;
class SensorList;

/// What the menu of a row tells and copies: the reading as it was when the menu opened. Main thread.
class SensorRowMenu final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the panel")
    Q_PROPERTY(QString key READ key NOTIFY keyChanged)
    Q_PROPERTY(QString name READ name NOTIFY nameChanged)
    Q_PROPERTY(bool isPinned READ isPinned NOTIFY isPinnedChanged)
    /// Values since the program started; empty for a reading without a number.
    Q_PROPERTY(QString lowest READ lowest NOTIFY lowestChanged)
    Q_PROPERTY(QString highest READ highest NOTIFY highestChanged)
    Q_PROPERTY(QString mean READ mean NOTIFY meanChanged)

  public:
    /// Both outlive the object.
    SensorRowMenu(const KelvinbarStore& store, const SensorList& sensors)
        : store_(store), sensors_(sensors) {}

    [[nodiscard]] QString key() const { return key_; }

    [[nodiscard]] QString name() const { return name_; }

    [[nodiscard]] bool isPinned() const { return isPinned_; }

    [[nodiscard]] QString lowest() const { return lowest_; }

    [[nodiscard]] QString highest() const { return highest_; }

    [[nodiscard]] QString mean() const { return mean_; }

    /// Takes the reading with `key`. Returns false, and changes nothing, if the list does not contain it.
    Q_INVOKABLE bool open(const QString& key);

    /// To the clipboard.
    Q_INVOKABLE void copyValue() const;
    Q_INVOKABLE void copyName() const;
    Q_INVOKABLE void copyKey() const;

  signals:
    void keyChanged();
    void nameChanged();
    void isPinnedChanged();
    void lowestChanged();
    void highestChanged();
    void meanChanged();

  private:
    void showRange(const std::optional<ReadingRange>& range);

    const KelvinbarStore& store_;
    const SensorList& sensors_;
    SMCReading reading_;
    QString key_;
    QString name_;
    bool isPinned_ = false;
    QString lowest_;
    QString highest_;
    QString mean_;
};

} // namespace kelvinbar
