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
    bool hasMonospacedDigits = true; ///< digits of one width: the item does not jitter as values change
    double baselineOffset = -0.5;    ///< points; below the line
};

/// A title in the colour of the system's labels.
struct StatusTitle {
    std::string text;
    StatusTitleStyle style;
};

/// The image left of the title.
struct StatusImage {
    enum class Source { resource, systemSymbol };

    Source source = Source::resource;
    std::string name;
    std::optional<Size> size;             ///< the image's own where there is none
    bool isTemplate = false;              ///< drawn in the colour of the bar, not in its own
    std::string accessibilityDescription; ///< empty for none
};

/// Port: the part of a status item that shows and is clicked. Main thread.
class StatusItemButton {
  public:
    virtual ~StatusItemButton() = default;
    virtual void setImageLeftOfTitle(const StatusImage& image) = 0;
    virtual void setTitle(const StatusTitle& title) = 0;
    virtual void setToolTip(const std::string& text) = 0;
    /// What a click anywhere on the item does.
    virtual void setAction(std::function<void()> action) = 0;
    /// Where the button is on the screen, where that is known.
    [[nodiscard]] virtual std::optional<Rect> frameOnScreen() const = 0;
    /// The visible frame of the screen that the button is on, where that is known.
    [[nodiscard]] virtual std::optional<Rect> visibleFrameOfScreen() const = 0;
};

/// Port: an item in the system's status bar, of the width that it needs. Goes away with its owner. Main
/// thread.
class StatusItem {
  public:
    virtual ~StatusItem() = default;
    /// Null where the system gives the item no button.
    virtual StatusItemButton* button() = 0;
};

/// Port: the system's status bar. Main thread.
class StatusBar {
  public:
    virtual ~StatusBar() = default;
    virtual std::unique_ptr<StatusItem> makeItem() = 0;
    /// Whether the program ships an image of that name.
    [[nodiscard]] virtual bool hasImageResource(const std::string& name) const = 0;
};

} // namespace kelvinbar
