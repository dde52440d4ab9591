#pragma once

#include "desktop/linux/session/BusObject.h"
#include "desktop/linux/tray/StatusMenuEntry.h"
#include "desktop/linux/tray/StatusMenuTypes.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusVariant>
#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <vector>

namespace kelvinbar {

/// The status item's menu, exported on the session bus as com.canonical.dbusmenu. Hosts open it on a right
/// click, and some also on a left click, instead of activating the item. A host has its own copy of the menu,
/// changes it after ItemsPropertiesUpdated and reloads it after LayoutUpdated.
///
/// A host may report a click on an entry that has just gone. An id therefore belongs to what the entry is and
/// is never given to another one; for an id that is unknown or gone, nothing is done.
///
/// Limits: one level, without icons and keyboard shortcuts. Hosts are notified when control returns to the
/// event loop, once for all changes until then. Main thread.
class StatusMenu final : public QObject {
    Q_OBJECT

  public:
    /// Of the object on the bus.
    static constexpr auto path = "/StatusMenu";

    explicit StatusMenu(const QDBusConnection& bus);
    StatusMenu(const StatusMenu&) = delete;
    StatusMenu& operator=(const StatusMenu&) = delete;
    ~StatusMenu() override = default;

    /// Goes on on another connection, after the earlier one was lost.
    void moveTo(const QDBusConnection& bus) { object_.moveTo(bus); }

    /// Replaces the entries. Hosts are notified of texts and marks that have changed, and of entries that
    /// have been added, removed or moved.
    void setEntries(std::vector<StatusMenuEntry> entries);

    [[nodiscard]] const std::vector<StatusMenuEntry>& entries() const { return entries_; }

  private:
    friend class StatusMenuAdaptor;

    /// What hosts were last told of an entry.
    using Announcement = StatusMenuItemProperties;

    [[nodiscard]] int idOf(const QString& identity);
    /// Null if no entry has the id now.
    [[nodiscard]] const StatusMenuEntry* entryWith(int id) const;
    [[nodiscard]] bool isKnown(int id) const;
    [[nodiscard]] QVariantMap propertiesOf(int id) const;
    [[nodiscard]] QList<Announcement> allProperties() const;
    void announceLayout();
    void announceSoon();
    /// Returns whether the layout has changed.
    bool announce();
    void announceProperties(const QList<Announcement>& current);
    void trigger(int id, uint timestamp) const;

    BusObject object_{path, CallLimit(), this};
    std::vector<StatusMenuEntry> entries_;
    QHash<QString, int> ids_; ///< of all identities there ever were
    QList<int> shownIds_;     ///< of `entries_`, in their order
    QList<Announcement> announced_;
    uint revision_ = 1;
    bool isAnnouncementPosted_ = false;
    class StatusMenuAdaptor* adaptor_;
};

// NOLINTBEGIN(readability-convert-member-functions-to-static): D-Bus calls them on the object
/// The object on the bus. Names and signatures are those of the protocol; ids count from 1, and 0 is the
/// root. Unknown ids have no properties and are left out of lists. No answer is longer than the menu and
/// `mostUnknownIds`, whatever is asked.
class StatusMenuAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version)
    Q_PROPERTY(QString TextDirection READ textDirection)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath)

  public:
    /// Of the unknown ids in a call, how many are named in the reply.
    static constexpr qsizetype mostUnknownIds = 1000;

    StatusMenuAdaptor(StatusMenu& menu, BusObject& object) : QDBusAbstractAdaptor(&object), menu_(menu) {}

    [[nodiscard]] uint version() const { return 3; }

    [[nodiscard]] QString textDirection() const { return "ltr"; }

    [[nodiscard]] QString status() const { return "normal"; }

    [[nodiscard]] QStringList iconThemePath() const { return {}; }

  public slots: // NOLINT(readability-redundant-access-specifiers)
    uint GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                   kelvinbar::StatusMenuLayout& layout);
    /// Without ids, the properties of all entries. An id that is given twice is answered once.
    QList<kelvinbar::StatusMenuItemProperties> GetGroupProperties(const QList<int>& ids,
                                                                  const QStringList& propertyNames);
    QDBusVariant GetProperty(int id, const QString& name);
    void Event(int id, const QString& name, const QDBusVariant& data, uint timestamp);
    /// Returns the unknown ids. An entry is clicked at most once in a group.
    QList<int> EventGroup(const QList<kelvinbar::StatusMenuEvent>& events);
    /// Returns whether the host has to reload the menu before it shows it.
    bool AboutToShow(int id);
    QList<int> AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors);

  signals:
    /// The entries below `parent` have changed. Replies to older revisions are outdated.
    void LayoutUpdated(uint revision, int parent);
    void ItemsPropertiesUpdated(const QList<kelvinbar::StatusMenuItemProperties>& updated,
                                const QList<kelvinbar::StatusMenuRemovedProperties>& removed);

  private:
    StatusMenu& menu_;
};

// NOLINTEND(readability-convert-member-functions-to-static)

} // namespace kelvinbar
