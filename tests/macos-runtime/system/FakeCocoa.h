#pragma once

#include "shell/Geometry.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

/// A fake of the frameworks that the Objective-C++ files call, for machines without them: our reading of
/// their documentation, strict where it leaves room. It calls handlers and observers without retaining them,
/// autoreleases whatever it returns, and ends the program for a message from the wrong thread or an unknown
/// selector.
///
/// Has what tests/macos-declarations declares, and nothing else. To extend it, declare the member there,
/// implement it in the file of its framework, and add here what a test sets or observes. Main thread.
namespace kelvinbar::fakes {

/// A screen. All places are in points in the system's coordinates, with y growing upwards.
struct FakeScreen {
    Rect frame;
    Rect visibleFrame;
    /// The parts of the menu bar beside the notch; empty without one.
    Rect leftOfNotch{};
    Rect rightOfNotch{};
};

/// A running program.
struct FakeProgram {
    int identifier = 0;
    std::optional<double> launch; ///< in seconds
    std::optional<std::string> bundleIdentifier;
};

/// An image as the program has set it up.
struct FakePicture {
    std::string name;
    bool isSystemSymbol = false;
    Size size;
    bool isTemplate = false;
    std::string description;

    friend bool operator==(const FakePicture&, const FakePicture&) = default;
};

/// A title as the program has set it up.
struct FakeTitle {
    std::string text;
    double pointSize = 0;
    double weight = 0;
    bool hasMonospacedDigits = false;
    std::string color;
    double baselineOffset = 0;

    friend bool operator==(const FakeTitle&, const FakeTitle&) = default;
};

/// What a status item shows.
struct FakeButton {
    std::optional<FakePicture> picture;
    bool isPictureLeftOfTitle = false;
    std::optional<FakeTitle> title;
    std::string toolTip;
    double itemLength = 0;
    bool isHighlighted = false;
};

/// A menu as it was when it appeared.
struct FakeMenu {
    std::vector<std::string> entries; ///< the titles from top to bottom; a separator has none
    Point place;                      ///< its top left corner, in the system's coordinates
    bool isItemHighlighted = false;   ///< the status item
};

/// What the program has set in a window.
struct FakeWindowState {
    unsigned long collectionBehavior = 0; ///< with the system's numbers
    int shadowUpdates = 0;
};

/// A timer that runs. Durations are in seconds.
struct FakeTimer {
    double interval = 0;
    double tolerance = 0;
    bool repeats = false;

    friend bool operator==(const FakeTimer&, const FakeTimer&) = default;
};

/// A notification to other programs.
struct FakePosting {
    std::string name;
    bool isImmediate = false;

    friend bool operator==(const FakePosting&, const FakePosting&) = default;
};

/// One request to draw a symbol.
struct FakeDrawing {
    std::string name;
    double pointSize = 0;
    double weight = 0;
    Rect place;
};

/// The only design that is declared.
inline constexpr auto fakeRoundedDesign = "rounded";

/// What `NSFontWeight…` are here. Unlike the real ones, no two are close.
inline constexpr double fakeRegularWeight = 1;
inline constexpr double fakeMediumWeight = 2;
inline constexpr double fakeSemiboldWeight = 3;

enum class FakePress { left, right, other };

/// How the user clicks.
enum class FakeClick { left, right, leftWithControl };

/// The registration as a login item, with the system's numbers.
enum class FakeLoginState { notRegistered, enabled, requiresApproval, notFound };

class FakeCocoa {
  public:
    /// The instance behind the system's classes.
    static FakeCocoa& shared();

    /// Makes a new system. Call from the main thread, before each test.
    void start();

    /// What the program has not taken back: status items, observers, monitors and the like. One text each.
    [[nodiscard]] std::vector<std::string> leftovers() const;

    /// Releases what belongs to the system. Returns the leftovers, and the class of each object that is still
    /// alive.
    [[nodiscard]] std::vector<std::string> end();

    // What the system is like; tests change it

    double version = 14;                          ///< of macOS
    std::map<std::string, std::string> fontFiles; ///< of the system font, by its design; "" is the usual one
    std::map<std::string, Size> symbols;          ///< the system's, with their sizes in points
    std::map<std::string, Size> pictures;         ///< the program's, by the name with which they are found
    bool givesButtons = true;                     ///< status items have one
    std::vector<FakeScreen> screens;
    /// The frame of the item's window in the system's coordinates. No value: the item has no window.
    std::optional<Rect> itemWindow;
    /// An index of `screens`. No value: the item's window is on none.
    std::optional<std::size_t> itemScreen;
    /// The title of the entry that the user chooses in a menu. Without one of that title, the user dismisses
    /// the menu.
    std::string menuChoice;
    bool allowsMonitors = true;
    Point mousePlace;      ///< in the system's coordinates
    bool isHidden = false; ///< the program; follows its requests
    FakeProgram program;
    std::vector<FakeProgram> programs; ///< all that run, this one included
    bool reducesMotion = false;
    bool increasesContrast = false;
    FakeLoginState loginState = FakeLoginState::notRegistered;
    bool allowsLoginChanges = true;
    bool parsesAddresses = true;
    bool givesBitmaps = true;
    bool givesBitmapBytes = true;
    bool givesGraphicsContexts = true;
    /// Draws into four bytes a pixel, row by row from the top; the last of the four is the coverage.
    std::function<void(std::uint8_t* bytes, std::size_t side)> paint;
    int activeProcessors = 8;
    std::uint64_t physicalMemory = 0; ///< in bytes
    int thermalState = 0;
    bool hasLowPowerMode = false;

    // What the program has done

    [[nodiscard]] std::size_t itemCount() const;
    /// The only status item's button.
    [[nodiscard]] FakeButton button() const;
    int activationPolicy = 0; ///< with the system's numbers
    int activations = 0;
    int hidings = 0;
    int beeps = 0;
    std::size_t savedGraphicsStates = 0; ///< and not restored
    std::vector<FakeDrawing> drawings;
    std::vector<std::string> openedAddresses;
    std::vector<FakePosting> postings;
    std::vector<FakeMenu> menus;
    [[nodiscard]] std::size_t monitorCount() const;
    std::uint64_t activityOptions = 0;               ///< of the last activity, with the system's numbers
    [[nodiscard]] std::size_t activityCount() const; ///< those that last
    /// Those that fire, also while a menu is open.
    [[nodiscard]] std::vector<FakeTimer> timers() const;
    /// The view of the program's only window.
    [[nodiscard]] void* windowView() const;
    [[nodiscard]] FakeWindowState window() const;

    // What happens

    /// A click on the only status item. Returns whether it has an action for that click.
    bool clickItem(FakeClick click = FakeClick::left);
    /// A mouse press in another program, where the mouse is.
    void pressElsewhere(FakePress press);
    /// The time of every timer has come.
    void fireTimers();
    /// The application's launch: installs its own handlers, and tells the observers.
    void launch();
    /// The user opens the program while it runs. Returns whether the program handles that itself.
    bool reopen();
    /// A notification from another program.
    void receive(const std::string& name);
};

} // namespace kelvinbar::fakes
