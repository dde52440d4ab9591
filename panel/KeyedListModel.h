#pragma once

#include <QAbstractListModel>
#include <QList>
#include <algorithm>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

namespace kelvinbar {

/// A list that comes to equal another by the smallest steps: views keep what stays, with its state, and hear
/// of each change once. An `Item` has an `id()`, unique in its list, and `changedRoles(const Item&)`.
template <typename Item>
class KeyedListModel : public QAbstractListModel {
  public:
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(items_.size());
    }

    [[nodiscard]] const std::vector<Item>& items() const { return items_; }

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

    /// Whether the item at `row` is all that stands between the row and the item that belongs there.
    [[nodiscard]] bool hasMovedDown(std::size_t row, const std::vector<Item>& target) const {
        return row + 1 < items_.size() && items_[row].id() != target[row].id() &&
               items_[row + 1].id() == target[row].id();
    }

    void sendDown(std::size_t row, const std::vector<Item>& target) {
        const auto place = std::find_if(target.begin(), target.end(),
                                        [&](const Item& item) { return item.id() == items_[row].id(); });
        const auto last = std::min(static_cast<std::size_t>(place - target.begin()), items_.size() - 1);
        beginMoveRows({}, static_cast<int>(row), static_cast<int>(row), {}, static_cast<int>(last) + 1);
        std::rotate(at(row), at(row) + 1, at(last) + 1);
        endMoveRows();
    }

    /// Whether there is such an item at or after `row`; it is at `row` then.
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

    /// Inserts target[row] and what else is new behind it; the last row of these.
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
