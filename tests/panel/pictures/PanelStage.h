#pragma once

#include "base/NotificationCenter.h"
#include "panel/PanelWindow.h"
#include "sensors/Machine.h"
#include "shell/Geometry.h"
#include "store/InMemoryUserDefaults.h"
#include "store/KelvinbarStore.h"
#include "tests/fakes/FakeClocks.h"
#include "tests/fakes/FakeShell.h"
#include "tests/fakes/ManualQueues.h"

#include <QImage>
#include <QPoint>
#include <QString>
#include <functional>
#include <memory>
#include <string>

class QQuickItem;
class QQuickWindow;

namespace kelvinbar {

/// In what the program of a stage differs from the usual one.
struct ProgramDifferences {
    std::string roundedFontFile{}; ///< of headings and values; empty for the font of the rest
    std::string contact{};
    std::string donationPage{};
};

/// The panel over a machine, with a clock that stands still, on an offscreen platform.
class PanelStage {
  public:
    using MakeMachine = std::function<Machine(std::shared_ptr<const MonotonicClock>)>;

    explicit PanelStage(const MakeMachine& makeMachine, const ProgramDifferences& differences = {});
    PanelStage(const PanelStage&) = delete;
    PanelStage& operator=(const PanelStage&) = delete;
    ~PanelStage();

    KelvinbarStore& store() { return *store_; }

    /// Whether the desktop asks for more contrast. Takes effect when the panel opens.
    void setContrastHigh(bool isHigh) { isContrastHigh_ = isHigh; }

    /// Completes the running refresh.
    void finishRefresh();

    /// Opens the panel with `size`, or with the size that it has on a screen of 1440 x 1200.
    void open();
    void open(Size size);

    /// Moves the panel to the screen of that number (PanelScreens.h). Call before it opens.
    void useScreen(int screen);

    QQuickWindow& window();

    /// The item with that accessible name, alone or followed by a value; null when there is none.
    QQuickItem* item(const QString& name);

    /// Move the pointer to the centre of that item, and click there.
    void pointAt(const QString& name);
    void click(const QString& name, Qt::MouseButton button = Qt::LeftButton);

    /// The panel, once all animations have ended.
    QImage picture();

  private:
    InMemoryUserDefaults defaults_;
    NotificationCenter notifications_;
    fakes::FakeWallClock wallClock_;
    fakes::ManualMainQueue mainQueue_;
    fakes::ManualBackgroundQueue backgroundQueue_;
    fakes::ShellJournal journal_;
    fakes::FakeLoginItemService loginItemService_{journal_};
    LoginItemManager loginItem_{loginItemService_};
    bool isContrastHigh_ = false;
    std::shared_ptr<KelvinbarStore> store_;
    std::unique_ptr<PanelWindow> panel_;
};

} // namespace kelvinbar
