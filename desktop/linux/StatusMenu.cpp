#include "desktop/linux/StatusMenu.h"

#include <algorithm>
#include <utility>

namespace kelvinbar {

namespace {

constexpr int rootId = 0;

} // namespace

StatusMenu::StatusMenu(QDBusConnection bus) : bus_(std::move(bus)), adaptor_(new StatusMenuAdaptor(*this)) {
    registerStatusMenuTypes();
    bus_.registerObject(path, this);
}

StatusMenu::~StatusMenu() { bus_.unregisterObject(path); }

void StatusMenu::setEntries(std::vector<StatusMenuEntry> entries) {
    const bool isSame =
        std::ranges::equal(entries, entries_, {}, &StatusMenuEntry::text, &StatusMenuEntry::text);
    entries_ = std::move(entries);
    if (!isSame) emit adaptor_->LayoutUpdated(++revision_, rootId);
}

/// Ids count from 1.
QVariantMap StatusMenu::propertiesOf(int id) const {
    if (id == rootId) return {{"children-display", "submenu"}};
    if (id < 1 || static_cast<std::size_t>(id) > entries_.size()) return {};
    const StatusMenuEntry& entry = entries_[static_cast<std::size_t>(id) - 1];
    if (entry.text.isEmpty()) return {{"type", "separator"}};
    // A single underscore would mark the next letter as the access key.
    return {{"label", QString(entry.text).replace('_', "__")}, {"enabled", true}, {"visible", true}};
}

void StatusMenu::trigger(int id) const {
    if (id < 1 || static_cast<std::size_t>(id) > entries_.size()) return;
    // A copy: the action may change the entries.
    const auto action = entries_[static_cast<std::size_t>(id) - 1].action;
    if (action) action();
}

uint StatusMenuAdaptor::GetLayout(int parentId, int recursionDepth, const QStringList& /*propertyNames*/,
                                  StatusMenuLayout& layout) {
    layout = {parentId, menu_.propertiesOf(parentId), {}};
    if (parentId == rootId && recursionDepth != 0) {
        for (int id = 1; static_cast<std::size_t>(id) <= menu_.entries_.size(); ++id) {
            layout.children.append({id, menu_.propertiesOf(id), {}});
        }
    }
    return menu_.revision_;
}

QList<StatusMenuItemProperties> StatusMenuAdaptor::GetGroupProperties(const QList<int>& ids,
                                                                      const QStringList& /*propertyNames*/) {
    QList<StatusMenuItemProperties> items;
    const auto append = [&](int id) { items.append({id, menu_.propertiesOf(id)}); };
    for (const int id : ids) append(id);
    if (ids.isEmpty()) {
        for (int id = 0; static_cast<std::size_t>(id) <= menu_.entries_.size(); ++id) append(id);
    }
    return items;
}

QDBusVariant StatusMenuAdaptor::GetProperty(int id, const QString& name) {
    return QDBusVariant(menu_.propertiesOf(id).value(name, QString()));
}

void StatusMenuAdaptor::Event(int id, const QString& name, const QDBusVariant& /*data*/, uint /*timestamp*/) {
    if (name == "clicked") menu_.trigger(id);
}

QList<int> StatusMenuAdaptor::EventGroup(const QList<StatusMenuEvent>& events) {
    for (const StatusMenuEvent& event : events) Event(event.id, event.name, event.data, event.timestamp);
    return {};
}

// NOLINTBEGIN(readability-convert-member-functions-to-static): D-Bus calls them on the object
bool StatusMenuAdaptor::AboutToShow(int /*id*/) { return false; }

QList<int> StatusMenuAdaptor::AboutToShowGroup(const QList<int>& /*ids*/, QList<int>& /*idErrors*/) {
    return {};
}

// NOLINTEND(readability-convert-member-functions-to-static)

} // namespace kelvinbar
