#pragma once

#include "shell/Geometry.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace kelvinbar {

/// How the title of a status item is drawn.
struct StatusTitleStyle {
    double pointSize = 10.5;
    bool isSemibold = true;
    bool hasMonospacedDigits = true; ///< the item keeps its width as values change
    double baselineOffset = -0.5;    ///< in points; negative is below the line
};

/// A title. Its colour is the system's label colour.
struct StatusTitle {
    std::string text;
    StatusTitleStyle style;
};

/// The image left of the title.
struct StatusImage {
    enum class Source { resource, systemSymbol };

    Source source = Source::resource;
    std::string name;
    std::optional<Size> size;             ///< no value: the image's own size
    bool isTemplate = false;              ///< drawn in the colour of the bar, not its own
    std::string accessibilityDescription; ///< may be empty
};

/// Port: the visible, clickable part of a status item. Main thread.
class StatusItemButton {
  public:
    virtual ~StatusItemButton() = default;
    virtual void setImageLeftOfTitle(const StatusImage& image) = 0;
    virtual void setTitle(const StatusTitle& title) = 0;
    virtual void setToolTip(const std::string& text) = 0;
    /// Calls `action` for a click anywhere on the item.
    virtual void setAction(std::function<void()> action) = 0;
    /// The button's frame. No value if the desktop does not report it.
    [[nodiscard]] virtual std::optional<Rect> frameOnScreen() const = 0;
    /// The visible frame of the button's screen. No value if the desktop does not report it.
    [[nodiscard]] virtual std::optional<Rect> visibleFrameOfScreen() const = 0;
};

/// Port: an item in the system's status bar, as wide as its content. The destructor removes it. Main thread.
class StatusItem {
  public:
    virtual ~StatusItem() = default;
    /// Null if the system has no button for the item.
    virtual StatusItemButton* button() = 0;
};

/// Port: the system's status bar. Main thread.
class StatusBar {
  public:
    virtual ~StatusBar() = default;
    virtual std::unique_ptr<StatusItem> makeItem() = 0;
    /// Whether the program contains an image of that name.
    [[nodiscard]] virtual bool hasImageResource(const std::string& name) const = 0;
};

} // namespace kelvinbar
