#pragma once

#include "panel/HideHistory.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <chrono>
#include <qqmlregistration.h>
#include <string>
#include <vector>

namespace kelvinbar {

/// Hidden readings for QML: how many there are, their list, and the line that offers to undo. Main thread.
class HiddenRows final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the panel")
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    /// The name of the reading that was hidden last, for some seconds; empty before and after.
    Q_PROPERTY(QString lastName READ lastName NOTIFY lastNameChanged)
    /// As of the last `list`.
    Q_PROPERTY(QStringList names READ names NOTIFY namesChanged)

  public:
    /// How long undoing is offered. It can be undone afterwards all the same.
    static constexpr std::chrono::seconds offer{6};

    /// The store outlives the object.
    explicit HiddenRows(KelvinbarStore& store);

    [[nodiscard]] int count() const { return count_; }

    [[nodiscard]] QString lastName() const { return lastName_; }

    [[nodiscard]] QStringList names() const { return names_; }

    void hide(const SMCReading& reading);
    /// Call when the store has changed.
    void storeChanged();

    /// Shows the reading again that was hidden last, pinned as it was.
    Q_INVOKABLE void undo();
    /// Sets `names`.
    Q_INVOKABLE void list();
    /// Shows the reading again that has this index in `names`.
    Q_INVOKABLE void show(int index);
    Q_INVOKABLE void endOffer();

  signals:
    void countChanged();
    void lastNameChanged();
    void namesChanged();

  private:
    void setLastName(const QString& name);

    KelvinbarStore& store_;
    HideHistory history_;
    int count_ = 0;
    QString lastName_;
    std::string lastKey_;
    QTimer offerTime_;
    QStringList names_;
    std::vector<std::string> listedKeys_; ///< by index in `names_`
};

} // namespace kelvinbar
