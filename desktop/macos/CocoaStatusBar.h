#pragma once

#include "desktop/macos/MenuBarPlace.h"
#include "shell/StatusItem.h"
#include "shell/StatusMenuItems.h"

namespace kelvinbar {

class CocoaStatusItem;

/// The menu bar of macOS, with at most one status item. Main thread.
class CocoaStatusBar final : public StatusBar {
  public:
    /// `onSecondaryClick` is called for a secondary click that the item's button reports.
    explicit CocoaStatusBar(std::function<void()> onSecondaryClick);

    /// The bar must outlive the item.
    std::unique_ptr<StatusItem> makeItem() override;
    [[nodiscard]] bool hasImageResource(const std::string& name) const override;

    /// Whether the item can be seen. Not in the bar if there is none.
    [[nodiscard]] ItemSight itemSight() const;

    /// Whether a press at `place` reaches the item.
    [[nodiscard]] bool isOnItem(Point place) const;

    /// Draws the item as one whose panel is open, or no longer.
    void setItemHighlighted(bool isHighlighted);

    /// Shows the entries as a menu below the item, until the user chooses one or dismisses it. Calls
    /// `onChosen` with the choice.
    void popUpMenu(const std::vector<StatusMenuItem>& items, std::function<void(StatusMenuCommand)> onChosen);

  private:
    friend class CocoaStatusItem;

    std::function<void()> onSecondaryClick_;
    CocoaStatusItem* item_ = nullptr; ///< set while it lives
};

} // namespace kelvinbar
