#pragma once

#include <QObject>
#include <QString>
#include <QTimer>
#include <chrono>
#include <qqmlregistration.h>

namespace kelvinbar {

class SensorList;

/// Finds rows by letters of their names as they are typed, without a field for them. Letters that follow each
/// other quickly enough belong together. Main thread.
class RowSearch final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the panel")
    /// What has been typed; empty without a search.
    Q_PROPERTY(QString text READ text NOTIFY textChanged)
    /// Whether a name contains `text`.
    Q_PROPERTY(bool isFound READ isFound NOTIFY isFoundChanged)

  public:
    /// The pause after which a letter begins another search.
    static constexpr std::chrono::seconds pause{3};

    /// The list outlives the object.
    explicit RowSearch(SensorList& sensors);

    [[nodiscard]] QString text() const { return text_; }

    [[nodiscard]] bool isFound() const { return isFound_; }

    /// Makes the next row current whose name contains what has been typed with `letters` at its end. The
    /// current row counts, except for the first letter. Returns false, and does nothing, if `letters` are no
    /// printable characters or a search would begin with a space.
    Q_INVOKABLE bool type(const QString& letters);
    /// Takes the last letter back. Returns false without a search.
    Q_INVOKABLE bool eraseLast();
    /// Returns whether a search has been ended.
    Q_INVOKABLE bool end();

  signals:
    void textChanged();
    void isFoundChanged();

  private:
    void find(const QString& text);

    SensorList& sensors_;
    QString text_;
    bool isFound_ = false;
    QTimer timeout_;
};

} // namespace kelvinbar
