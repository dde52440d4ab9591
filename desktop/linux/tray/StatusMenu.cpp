#include "desktop/linux/tray/StatusMenu.h"

#include <algorithm>
#include <utility>

namespace kelvinbar {

namespace {

constexpr int rootId = 0;

QVariantMap propertiesOfEntry(const StatusMenuEntry& entry) {
    if (entry.text.isEmpty()) return {{"type", "separator"}};
    // A single underscore would mark the next letter as the access key.
    QVariantMap properties{
        {"label", QString(entry.text).replace('_', "__")}, {"enabled", true}, {"visible", true}};
    if (entry.isChecked) {
        properties["toggle-type"] = "checkmark";
        properties["toggle-state"] = *entry.isChecked ? 1 : 0;
    }
    return properties;
}

/// A caller may send a million names, which are compared with those of each entry.
QSet<QString> setOf(const QStringList& names) { return {names.begin(), names.end()}; }

/// The properties with these names; without names, all of them.
QVariantMap selected(const QVariantMap& properties, const QSet<QString>& names) {
    if (names.isEmpty()) return properties;
    QVariantMap selection;
    for (const auto& [name, value] : properties.asKeyValueRange()) {
        if (names.contains(name)) selection[name] = value;
    }
    return selection;
}

/// The properties in `current` that are not the same in `earlier`.
QVariantMap changed(const QVariantMap& earlier, const QVariantMap& current) {
    QVariantMap changes;
    for (const auto& [name, value] : current.asKeyValueRange()) {
        if (earlier.value(name) != value) changes[name] = value;
    }
    return changes;
}

/// `ids` without repetitions of those that `isWanted`, and without the others. A caller may send a million of
/// them; the result is no longer than the menu.
template <typename IsWanted>
QList<int> distinct(const QList<int>& ids, IsWanted isWanted) {
    QList<int> found;
    for (const int id : ids) {
        if (isWanted(id) && !found.contains(id)) found.append(id);
    }
    return found;
}

void appendUnknown(int id, QList<int>& unknown) {
    if (unknown.size() < StatusMenuAdaptor::mostUnknownIds) unknown.append(id);
}

} // namespace

StatusMenu::StatusMenu(const QDBusConnection& bus) : adaptor_(new StatusMenuAdaptor(*this, object_)) {
    registerStatusMenuTypes();
    moveTo(bus);
    connect(&object_, &BusObject::callsRefused, this, &StatusMenu::announceLayout);
}

void StatusMenu::setEntries(std::vector<StatusMenuEntry> entries) {
    entries_ = std::move(entries);
    shownIds_.clear();
    for (const StatusMenuEntry& entry : entries_) shownIds_.append(idOf(entry.identity));
    announceSoon();
}

int StatusMenu::idOf(const QString& identity) {
    const auto known = ids_.constFind(identity);
    if (known != ids_.constEnd()) return *known;
    const int next = static_cast<int>(ids_.size()) + 1;
    ids_.insert(identity, next);
    return next;
}

const StatusMenuEntry* StatusMenu::entryWith(int id) const {
    const qsizetype place = shownIds_.indexOf(id);
    return place < 0 ? nullptr : &entries_[static_cast<std::size_t>(place)];
}

bool StatusMenu::isKnown(int id) const { return id == rootId || entryWith(id) != nullptr; }

QVariantMap StatusMenu::propertiesOf(int id) const {
    if (id == rootId) return {{"children-display", "submenu"}};
    const StatusMenuEntry* const entry = entryWith(id);
    return entry == nullptr ? QVariantMap() : propertiesOfEntry(*entry);
}

QList<StatusMenu::Announcement> StatusMenu::allProperties() const {
    QList<Announcement> all;
    for (const int id : shownIds_) all.append({id, propertiesOf(id)});
    return all;
}

void StatusMenu::announceSoon() {
    if (std::exchange(isAnnouncementPosted_, true)) return;
    QMetaObject::invokeMethod(this, [this] { announce(); }, Qt::QueuedConnection);
}

bool StatusMenu::announce() {
    if (!std::exchange(isAnnouncementPosted_, false)) return false;
    const QList<Announcement> current = allProperties();
    const bool isSameLayout =
        std::ranges::equal(current, announced_, {}, &Announcement::id, &Announcement::id);
    if (isSameLayout) {
        announceProperties(current);
    } else {
        announceLayout();
    }
    announced_ = current;
    return !isSameLayout;
}

/// Hosts then read the properties as well.
void StatusMenu::announceLayout() { emit adaptor_->LayoutUpdated(++revision_, rootId); }

/// The ids in `current` are those that were announced before.
void StatusMenu::announceProperties(const QList<Announcement>& current) {
    QList<StatusMenuItemProperties> updated;
    for (qsizetype place = 0; place < current.size(); ++place) {
        const QVariantMap changes = changed(announced_[place].properties, current[place].properties);
        if (!changes.isEmpty()) updated.append({current[place].id, changes});
    }
    if (!updated.isEmpty()) emit adaptor_->ItemsPropertiesUpdated(updated, {});
}

void StatusMenu::trigger(int id, uint timestamp) const {
    const StatusMenuEntry* const entry = entryWith(id);
    if (entry == nullptr) return;
    // A copy: the action may change the entries.
    const auto action = entry->action;
    if (action) action(timestamp);
}

uint StatusMenuAdaptor::GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                                  StatusMenuLayout& layout) {
    const QSet<QString> names = setOf(propertyNames);
    layout = {parentId, selected(menu_.propertiesOf(parentId), names), {}};
    if (parentId == rootId && recursionDepth != 0) {
        for (const StatusMenuItemProperties& entry : menu_.allProperties()) {
            layout.children.append({entry.id, selected(entry.properties, names), {}});
        }
    }
    return menu_.revision_;
}

QList<StatusMenuItemProperties> StatusMenuAdaptor::GetGroupProperties(const QList<int>& ids,
                                                                      const QStringList& propertyNames) {
    QList<int> wanted = distinct(ids, [this](int id) { return menu_.isKnown(id); });
    if (ids.isEmpty()) wanted = QList<int>{rootId} + menu_.shownIds_;
    const QSet<QString> names = setOf(propertyNames);
    QList<StatusMenuItemProperties> items;
    for (const int id : std::as_const(wanted)) {
        items.append({id, selected(menu_.propertiesOf(id), names)});
    }
    return items;
}

QDBusVariant StatusMenuAdaptor::GetProperty(int id, const QString& name) {
    return QDBusVariant(menu_.propertiesOf(id).value(name, QString()));
}

void StatusMenuAdaptor::Event(int id, const QString& name, const QDBusVariant& /*data*/, uint timestamp) {
    if (name == "clicked") menu_.trigger(id, timestamp);
}

QList<int> StatusMenuAdaptor::EventGroup(const QList<StatusMenuEvent>& events) {
    QList<int> unknown;
    QSet<int> clicked;
    for (const StatusMenuEvent& event : events) {
        if (!menu_.isKnown(event.id)) {
            appendUnknown(event.id, unknown);
        } else if (event.name == "clicked" && !clicked.contains(event.id)) {
            clicked.insert(event.id);
            menu_.trigger(event.id, event.timestamp);
        }
    }
    return unknown;
}

bool StatusMenuAdaptor::AboutToShow(int /*id*/) { return menu_.announce(); }

QList<int> StatusMenuAdaptor::AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors) {
    for (const int id : ids) {
        if (!menu_.isKnown(id)) appendUnknown(id, idErrors);
    }
    return menu_.announce() ? QList<int>{rootId} : QList<int>();
}

} // namespace kelvinbar
