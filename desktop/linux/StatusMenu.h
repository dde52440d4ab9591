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
    QString text;                 ///< empty for a separator
    std::function<void()> action; ///< may change the entries; not called for a separator
};

/// The status item's menu, exported on the session bus as com.canonical.dbusmenu. Hosts open it on a right
/// click, and some also on a left click, instead of activating the item. A host has its own copy of the menu
/// and reloads it after LayoutUpdated.
///
/// Limits: one level, without icons, check marks and keyboard shortcuts. Main thread.
class StatusMenu final : public QObject {
    Q_OBJECT

  public:
    /// Of the object on the bus.
    static constexpr auto path = "/StatusMenu";

    explicit StatusMenu(QDBusConnection bus);
    StatusMenu(const StatusMenu&) = delete;
    StatusMenu& operator=(const StatusMenu&) = delete;
    ~StatusMenu() override;

    /// Notifies hosts if a text or the number of entries has changed.
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

// NOLINTBEGIN(readability-convert-member-functions-to-static): D-Bus calls them on the object
/// The object on the bus. Names and signatures are those of the protocol; ids count from 1, and 0 is the
/// root.
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
    /// The entries below `parent` have changed. Replies to older revisions are outdated.
    void LayoutUpdated(uint revision, int parent);

  private:
    StatusMenu& menu_;
};

// NOLINTEND(readability-convert-member-functions-to-static)

} // namespace kelvinbar
