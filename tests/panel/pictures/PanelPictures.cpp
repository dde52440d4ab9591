#include "tests/panel/pictures/PanelPictures.h"

#include "base/Log.h"
#include "machines/Platform.h"
#include "machines/demo/DemoMachine.h"
#include "tests/panel/EmptyMachine.h"
#include "tests/panel/PanelScreens.h"
#include "tests/panel/pictures/PanelStage.h"

#include <QQuickWindow>
#include <QTest>
#include <array>
#include <memory>
#include <string>
#include <utility>

namespace kelvinbar {

namespace {

using Clock = std::shared_ptr<const MonotonicClock>;

/// With the texts of a Mac on every platform.
Machine intelNotebook(Clock clock) {
    return makeDemoMachine("intel-notebook",
                           {.source = nullptr, .system = nullptr, .clock = std::move(clock)});
}

/// With the texts of the platform that the pictures are drawn on.
Machine linuxPC(Clock clock) {
    StandardErrorSink standardError;
    Log log(standardError, {});
    Machine host = makePlatform(log);
    host.clock = std::move(clock);
    return makeDemoMachine("linux-pc", host);
}

/// The Intel notebook with a few readings pinned, at rest.
class DemoStage : public PanelStage {
  public:
    explicit DemoStage(const std::string& roundedFontFile = {}) : PanelStage(intelNotebook, roundedFontFile) {
        finishRefresh();
        store().setMenuBarKeys({"TC0P", "F0Ac"});
    }
};

QImage fixedPanel() {
    DemoStage stage;
    stage.open();
    return stage.picture();
}

QImage roundedFont() {
    DemoStage stage(roundFontFile);
    stage.open();
    return stage.picture();
}

QImage panelOfALinuxPC() {
    PanelStage stage(linuxPC);
    stage.finishRefresh();
    stage.store().setMenuBarKeys({"k10temp-pci-00c3/temp1", "amdgpu-pci-0300/fan1"});
    stage.open();
    return stage.picture();
}

QImage narrowPanel() {
    DemoStage stage;
    stage.open({420, 560});
    QTest::keyClick(&stage.window(), Qt::Key_Down);
    QTest::keyClick(&stage.window(), Qt::Key_End);
    return stage.picture();
}

QImage dynamicPanel() {
    DemoStage stage;
    stage.store().setDisplayMode(SMCWindowDisplayMode::dynamic);
    stage.store().setSamplingRate(SMCSamplingRate::fast);
    stage.open();
    return stage.picture();
}

QImage hoveredRow() {
    DemoStage stage;
    stage.open();
    stage.pointAt("Core 2");
    return stage.picture();
}

QImage rowWithTheKeyboard() {
    DemoStage stage;
    stage.open();
    for (int presses = 0; presses < 4; ++presses) QTest::keyClick(&stage.window(), Qt::Key_Down);
    QTest::keyClick(&stage.window(), Qt::Key_Space);
    return stage.picture();
}

QImage highContrast() {
    DemoStage stage;
    stage.setContrastHigh(true);
    stage.open();
    return stage.picture();
}

QImage largeText() {
    DemoStage stage;
    stage.useScreen(screens::textTwiceAsLarge);
    stage.open();
    return stage.picture();
}

QImage menuOfARow() {
    DemoStage stage;
    stage.open();
    stage.click("Core 2", Qt::RightButton);
    QTest::keyClick(&stage.window(), Qt::Key_Down);
    return stage.picture();
}

QImage undoLine() {
    DemoStage stage;
    stage.open();
    for (int presses = 0; presses < 3; ++presses) QTest::keyClick(&stage.window(), Qt::Key_Down);
    QTest::keyClick(&stage.window(), Qt::Key_Delete);
    return stage.picture();
}

QImage aboutPanel() {
    DemoStage stage;
    stage.open();
    stage.click("About");
    return stage.picture();
}

QImage scanning() {
    PanelStage stage(intelNotebook);
    stage.open();
    return stage.picture();
}

QImage emptyPanel(bool hasController) {
    PanelStage stage([hasController](std::shared_ptr<const MonotonicClock> clock) {
        return fakes::emptyMachine(hasController, std::move(clock));
    });
    stage.finishRefresh();
    stage.open();
    return stage.picture();
}

constexpr std::array pictures{
    PanelPicture{"fixed", fixedPanel},
    PanelPicture{"linux-pc", panelOfALinuxPC},
    PanelPicture{"narrow", narrowPanel},
    PanelPicture{"dynamic", dynamicPanel},
    PanelPicture{"hovered-row", hoveredRow},
    PanelPicture{"keyboard", rowWithTheKeyboard},
    PanelPicture{"high-contrast", highContrast},
    PanelPicture{"rounded-font", roundedFont},
    PanelPicture{"large-text", largeText},
    PanelPicture{"row-menu", menuOfARow},
    PanelPicture{"undo", undoLine},
    PanelPicture{"about", aboutPanel},
    PanelPicture{"scanning", scanning},
    PanelPicture{"nothing-found", [] { return emptyPanel(true); }},
    PanelPicture{"unavailable", [] { return emptyPanel(false); }},
};

} // namespace

std::span<const PanelPicture> panelPictures() { return pictures; }

} // namespace kelvinbar
