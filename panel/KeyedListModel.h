#pragma once

#include <QAbstractListModel>
#include <QList>
#include <algorithm>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

namespace kelvinbar {

/// A list model that is updated by replacing its content: it compares the old and the new list by id, and
/// signals removals, moves, insertions and changes. Views keep the delegates of items that stay, with their
/// state (hover, focus, animations), where a reset would destroy them all.
///
/// An `Item` has `id()`, which must be unique in its list, and `changedRoles(const Item&)`, the roles in
/// which another item of the same id differs; an item without any is not signalled. Adjacent rows are removed
/// and inserted with one signal.
///
/// Pitfalls: during an update a view sees the intermediate lists. The cost is linear for lists in the same
/// order and quadratic for shuffled ones. Main thread.
template <typename Item>
class KeyedListModel : public QAbstractListModel {
  public:
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(items_.size());
    }

    [[nodiscard]] const std::vector<Item>& items() const { return items_; }

    /// Makes the list equal to `target`.
    void update(std::vector<Item> target) {
        removeAllBut(target);
        for (std::size_t row = 0; row < target.size(); ++row) {
            if (hasMovedDown(row, target)) sendDown(row, target);
            if (!bringToRow(row, target[row].id())) row = insertRun(row, target);
            changeItem(row, std::move(target[row]));
        }
    }

  private:
    using Ids = std::unordered_set<std::string_view>;

    static Ids idsOf(const std::vector<Item>& items) {
        Ids ids;
        for (const Item& item : items) ids.insert(item.id());
        return ids;
    }

    /// Removes the items whose ids `target` does not contain.
    void removeAllBut(const std::vector<Item>& target) {
        const Ids kept = idsOf(target);
        for (std::size_t end = items_.size(); end > 0;) {
            std::size_t first = end;
            while (first > 0 && !kept.contains(items_[first - 1].id())) --first;
            if (first < end) removeRun(first, end);
            end = first == 0 ? 0 : first - 1;
        }
    }

    void removeRun(std::size_t first, std::size_t end) {
        beginRemoveRows({}, static_cast<int>(first), static_cast<int>(end) - 1);
        items_.erase(at(first), at(end));
        endRemoveRows();
    }

    /// Whether the item that belongs at `row` is at the next row: then the one at `row` has moved down.
    [[nodiscard]] bool hasMovedDown(std::size_t row, const std::vector<Item>& target) const {
        return row + 1 < items_.size() && items_[row].id() != target[row].id() &&
               items_[row + 1].id() == target[row].id();
    }

    /// Moves the item at `row` down to its final row, or to the end of the list.
    void sendDown(std::size_t row, const std::vector<Item>& target) {
        const auto place = std::find_if(target.begin(), target.end(),
                                        [&](const Item& item) { return item.id() == items_[row].id(); });
        const auto last = std::min(static_cast<std::size_t>(place - target.begin()), items_.size() - 1);
        beginMoveRows({}, static_cast<int>(row), static_cast<int>(row), {}, static_cast<int>(last) + 1);
        std::rotate(at(row), at(row) + 1, at(last) + 1);
        endMoveRows();
    }

    /// Moves the item with `id` up to `row`. False when no row from `row` on has it.
    bool bringToRow(std::size_t row, std::string_view id) {
        const auto found =
            std::find_if(at(row), items_.end(), [&](const Item& item) { return item.id() == id; });
        if (found == items_.end()) return false;
        if (found == at(row)) return true;
        const int from = static_cast<int>(found - items_.begin());
        beginMoveRows({}, from, from, {}, static_cast<int>(row));
        std::rotate(at(row), found, found + 1);
        endMoveRows();
        return true;
    }

    /// Inserts target[row] and the new items that follow it. Returns the last inserted row.
    std::size_t insertRun(std::size_t row, const std::vector<Item>& target) {
        const Ids present = idsOf(items_);
        std::size_t end = row + 1;
        while (end < target.size() && !present.contains(target[end].id())) ++end;
        beginInsertRows({}, static_cast<int>(row), static_cast<int>(end) - 1);
        items_.insert(at(row), target.begin() + static_cast<std::ptrdiff_t>(row),
                      target.begin() + static_cast<std::ptrdiff_t>(end));
        endInsertRows();
        return end - 1;
    }

    /// Replaces the item at `row` and signals the roles that differ.
    void changeItem(std::size_t row, Item item) {
        const QList<int> roles = items_[row].changedRoles(item);
        if (roles.isEmpty()) return;
        items_[row] = std::move(item);
        const QModelIndex changed = index(static_cast<int>(row));
        emit dataChanged(changed, changed, roles);
    }

    auto at(std::size_t row) { return items_.begin() + static_cast<std::ptrdiff_t>(row); }

    std::vector<Item> items_;
};

} // namespace kelvinbar
