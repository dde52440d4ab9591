#pragma once

#include "desktop/linux/StatusMenuTypes.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusVariant>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <functional>
#include <vector>

namespace kelvinbar {

/// One entry of the menu.
struct StatusMenuEntry {
    QString text; ///< empty for a separator
    std::function<void()> action;
};

/// The menu that hosts open which show a menu on a click (com.canonical.dbusmenu).
class StatusMenu final : public QObject {
    Q_OBJECT

  public:
    static constexpr auto path = "/StatusMenu";

    explicit StatusMenu(QDBusConnection bus);
    StatusMenu(const StatusMenu&) = delete;
    StatusMenu& operator=(const StatusMenu&) = delete;
    ~StatusMenu() override;

    /// Tells hosts only when a text or the number of entries changed.
    void setEntries(std::vector<StatusMenuEntry> entries);

  private:
    friend class StatusMenuAdaptor;

    [[nodiscard]] QVariantMap propertiesOf(int id) const;
    void trigger(int id) const;

    QDBusConnection bus_;
    std::vector<StatusMenuEntry> entries_;
    uint revision_ = 1;
    class StatusMenuAdaptor* adaptor_;
};

// NOLINTBEGIN(readability-convert-member-functions-to-static): the bus asks objects
class StatusMenuAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version)
    Q_PROPERTY(QString TextDirection READ textDirection)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath)

  public:
    explicit StatusMenuAdaptor(StatusMenu& menu) : QDBusAbstractAdaptor(&menu), menu_(menu) {}

    [[nodiscard]] uint version() const { return 3; }

    [[nodiscard]] QString textDirection() const { return "ltr"; }

    [[nodiscard]] QString status() const { return "normal"; }

    [[nodiscard]] QStringList iconThemePath() const { return {}; }

  public slots: // NOLINT(readability-redundant-access-specifiers)
    uint GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                   kelvinbar::StatusMenuLayout& layout);
    QList<kelvinbar::StatusMenuItemProperties> GetGroupProperties(const QList<int>& ids,
                                                                  const QStringList& propertyNames);
    QDBusVariant GetProperty(int id, const QString& name);
    void Event(int id, const QString& name, const QDBusVariant& data, uint timestamp);
    QList<int> EventGroup(const QList<kelvinbar::StatusMenuEvent>& events);
    bool AboutToShow(int id);
    QList<int> AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors);

  signals:
    void LayoutUpdated(uint revision, int parent);

  private:
    StatusMenu& menu_;
};

// NOLINTEND(readability-convert-member-functions-to-static)

} // namespace kelvinbar
