#include "tests/panel/pictures/PanelPictures.h"

#include "base/Log.h"
#include "catalogue/SMCCategory.h"
#include "machines/Platform.h"
#include "machines/demo/DemoMachine.h"
#include "process/StandardErrorSink.h"
#include "tests/fakes/FakeSensorSource.h"
#include "tests/fakes/FakeSystemInformation.h"
#include "tests/panel/EmptyMachine.h"
#include "tests/panel/PanelScreens.h"
#include "tests/panel/pictures/PanelStage.h"

#include <QQuickWindow>
#include <QTest>
#include <array>
#include <memory>
#include <string>
#include <utility>
#include <vector>

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
    explicit DemoStage(const ProgramDifferences& differences = {}) : PanelStage(intelNotebook, differences) {
        finishRefresh();
        store().setMenuBarKeys({"TC0P", "F0Ac"});
    }
};

QImage fixedPanel() {
    return fixedPanelAfter([](PanelStage&) {});
}

QImage roundedFont() {
    DemoStage stage({.roundedFontFile = roundFontFile});
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

/// A machine with these readings.
PanelStage::MakeMachine machineWith(std::vector<RawReading> readings) {
    return [readings = std::move(readings)](Clock clock) -> Machine {
        auto source = std::make_shared<fakes::FakeSensorSource>();
        source->readings = readings;
        return {.source = std::move(source), .system = nullptr, .clock = std::move(clock)};
    };
}

RawReading readingOf(const std::string& key, SMCCategory category, std::string name, double value,
                     std::string unit) {
    RawReading reading;
    reading.key = "chip/" + key;
    reading.type = "flt";
    reading.value = QString::number(value).toStdString();
    reading.numericValue = value;
    reading.name = std::move(name);
    reading.category = std::string(rawValue(category));
    reading.unit = std::move(unit);
    return reading;
}

QImage panelOver(std::vector<RawReading> readings) {
    PanelStage stage(machineWith(std::move(readings)));
    stage.finishRefresh();
    stage.open();
    return stage.picture();
}

QImage fansVoltagesAndPower() {
    return panelOver({readingOf("fan1", SMCCategory::fans, "Left Fan", 1834, "RPM"),
                      readingOf("fan2", SMCCategory::fans, "Right Fan", 992, "RPM"),
                      readingOf("in0", SMCCategory::voltages, "Core Voltage", 1.104, "V"),
                      readingOf("in1", SMCCategory::voltages, "12 V Rail", 12.096, "V"),
                      readingOf("power1", SMCCategory::power, "Package Power", 41.5, "W"),
                      readingOf("curr1", SMCCategory::currents, "Battery Current", 0.82, "A"),
                      readingOf("bat1", SMCCategory::battery, "Battery Charge", 87, "%")});
}

QImage longTexts() {
    const std::string words = "A sensor whose maker found very many words for what it measures and where";
    RawReading text = readingOf("text1", SMCCategory::cpu, words + " in this machine", 0, "");
    text.numericValue.reset();
    text.value = text.raw = "a value that is a whole sentence and longer than its field";
    return panelOver({readingOf("temp1", SMCCategory::cpu, words, 48.25, "°C"),
                      readingOf("temp2", SMCCategory::cpu, "Short", 51.5, "°C"), text});
}

QImage rightToLeftNames() {
    return panelOver({readingOf("temp1", SMCCategory::cpu, "מעבד 1", 48.25, "°C"),
                      readingOf("temp2", SMCCategory::cpu, "معالج 2", 51.5, "°C"),
                      readingOf("temp3", SMCCategory::cpu, "CPU (מעבד)", 47, "°C")});
}

QImage nativeFallback() {
    PanelStage stage([](Clock clock) {
        Machine machine = fakes::emptyMachine(false, std::move(clock));
        auto system = std::make_shared<fakes::FakeSystemInformation>();
        system->processors = 8;
        system->memory = std::uint64_t{16} << 30U;
        machine.system = std::move(system);
        return machine;
    });
    stage.finishRefresh();
    stage.open();
    return stage.picture();
}

QImage aboutPanel() {
    DemoStage stage;
    stage.open();
    stage.click("About");
    return stage.picture();
}

QImage contactAndDonations() {
    DemoStage stage({.contact = "kelvinbar@example.org", .donationPage = "https://example.org/donate"});
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
    PanelPicture{"fans-voltages-power", fansVoltagesAndPower},
    PanelPicture{"long-texts", longTexts},
    PanelPicture{"right-to-left", rightToLeftNames},
    PanelPicture{"native-fallback", nativeFallback},
    PanelPicture{"row-menu", menuOfARow},
    PanelPicture{"undo", undoLine},
    PanelPicture{"about", aboutPanel},
    PanelPicture{"contact-and-donations", contactAndDonations},
    PanelPicture{"scanning", scanning},
    PanelPicture{"nothing-found", [] { return emptyPanel(true); }},
    PanelPicture{"unavailable", [] { return emptyPanel(false); }},
};

} // namespace

std::span<const PanelPicture> panelPictures() { return pictures; }

QImage fixedPanelAfter(const std::function<void(PanelStage&)>& change) {
    DemoStage stage;
    stage.open();
    change(stage);
    return stage.picture();
}

} // namespace kelvinbar
