#include "tests/panel/pictures/PanelPictures.h"

#include "machines/demo/DemoMachine.h"
#include "tests/panel/EmptyMachine.h"
#include "tests/panel/pictures/PanelStage.h"

#include <QQuickWindow>
#include <QTest>
#include <array>

namespace kelvinbar {

namespace {

/// The demo machine with a few readings pinned, at rest.
class DemoStage : public PanelStage {
  public:
    DemoStage() : PanelStage(makeDemoMachine) {
        finishRefresh();
        store().setMenuBarKeys({"TC0P", "F0Ac"});
    }
};

QImage fixedPanel() {
    DemoStage stage;
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

QImage aboutPanel() {
    DemoStage stage;
    stage.open();
    stage.click("About");
    return stage.picture();
}

QImage scanning() {
    PanelStage stage(makeDemoMachine);
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
    PanelPicture{"narrow", narrowPanel},
    PanelPicture{"dynamic", dynamicPanel},
    PanelPicture{"hovered-row", hoveredRow},
    PanelPicture{"keyboard", rowWithTheKeyboard},
    PanelPicture{"about", aboutPanel},
    PanelPicture{"scanning", scanning},
    PanelPicture{"nothing-found", [] { return emptyPanel(true); }},
    PanelPicture{"unavailable", [] { return emptyPanel(false); }},
};

} // namespace

std::span<const PanelPicture> panelPictures() { return pictures; }

} // namespace kelvinbar
