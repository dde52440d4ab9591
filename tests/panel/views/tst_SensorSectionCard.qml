import QtQuick
import Kelvinbar.Panel as Panel

Item {
    id: board
    width: 462
    height: 690

    ViewTest {
        name: "SensorSectionCard"

        /// The card of the panel with that title.
        function card(panel, title) {
            return firstIn(panel, item => item instanceof Panel.SensorSectionCard && item.title === title, "card " + title);
        }

        function rowsOf(cardItem) {
            return rowsIn(cardItem).sort((first, second) => first.rowTop - second.rowTop);
        }

        function test_theHeaderTellsTitleSubtitleAndCount() {
            stage.showReadings(["Core 1", "Core 2", "Core 3"], "48.0");
            const cpu = card(makePanel(), "CPU");
            verify(hasText(cpu, "CPU"));
            verify(hasText(cpu, "Package, cores, diode, PECI and CPU power"));
            const numbers = digitsIn(cpu).filter(item => !rowsIn(cpu).some(row => isInside(placeOf(item), placeOf(row))));
            compare(numbers.map(item => item.text), ["3"]);
        }

        function test_theHeaderIsAboveTheRowsFromSymbolToBadge() {
            stage.showReadings(["Core 1"], "48.0");
            const cpu = card(makePanel(), "CPU");
            const symbol = placeOf(symbolsIn(cpu)[0]);
            const title = placeOf(textIn(cpu, "CPU"));
            const subtitle = placeOf(textIn(cpu, "Package, cores, diode, PECI and CPU power"));
            const badge = placeOf(digitsIn(cpu)[0].parent);
            verify(symbol.x + symbol.width <= title.x);
            verify(title.y + title.height <= subtitle.y + 1);
            verify(title.x + title.width <= badge.x);
            verify(isInside(badge, placeOf(cpu)));
            for (const place of [symbol, title, subtitle, badge])
                verify(place.y + place.height <= placeOf(rowsIn(cpu)[0]).y);
        }

        function test_theTitleIsInBlackType() {
            const cpu = card(makePanel(), "CPU");
            compare(textIn(cpu, "CPU").font.weight, Font.Black);
        }

        function test_theBadgeCountsAlsoRowsOffTheScreen() {
            const names = [];
            for (let index = 0; index < 120; ++index)
                names.push("Core " + index);
            stage.showReadings(names, "48.0");
            const cpu = card(makePanel(), "CPU");
            verify(digitsIn(cpu).some(item => item.text === "120"));
            verify(rowsIn(cpu).length < 30);
            verify(rowsIn(cpu).length >= 7);
        }

        function test_theSymbolStandsInATintedTile() {
            const cpu = card(makePanel(), "CPU");
            const symbol = symbolsIn(cpu)[0];
            compare(symbol.name, "cpu");
            compareColor(symbol.color, Panel.PanelStyle.accentSymbol(cpu.accent));
            const tile = symbol.parent;
            verify(tile instanceof Panel.Plate);
            verify(tile.radius > 0);
            compareColor(Qt.rgba(tile.colors[0].r, tile.colors[0].g, tile.colors[0].b, 1), cpu.accent);
        }

        function test_theCardIsARoundedRectangleWithAFaintDiagonalGradientAndAThinStroke() {
            const cpu = card(makePanel(), "CPU");
            const plate = plateIn(cpu);
            compare(placeOf(plate), placeOf(cpu));
            compare(plate.radius, 14);
            verify(!plate.isVertical);
            verify(plate.colors.length >= 2);
            for (const color of plate.colors)
                verify(color.a > 0 && color.a < 0.2);
            verify(plate.stroke.a > 0);
        }

        function test_aCardHasOneRowForEachReadingInItsOrder() {
            stage.showReadings(["Core 10", "Core 2", "CPU Proximity", "CPU Package"], "48.0");
            const rows = rowsOf(card(makePanel(), "CPU"));
            compare(rows.map(row => row.name), ["CPU Proximity", "CPU Package", "Core 2", "Core 10"]);
        }

        function test_rowsLieInsideTheirCardOneBelowTheOther() {
            stage.showReadings(["Core 1", "Core 2", "Core 3"], "48.0");
            const cpu = card(makePanel(), "CPU");
            const rows = rowsOf(cpu);
            compare(rows.length, 3);
            for (let index = 0; index < rows.length; ++index) {
                verify(isInside(placeOf(rows[index]), placeOf(cpu)));
                if (index > 0)
                    verify(placeOf(rows[index]).y >= placeOf(rows[index - 1]).y + rows[index - 1].height);
            }
        }

        function test_rowsHaveTheAccentOfTheirSection() {
            const panel = makePanel();
            flickableIn(panel).contentY = 300;
            const cards = cardsIn(panel).filter(item => rowsIn(item).length > 0);
            verify(cards.length > 1);
            verify(!Qt.colorEqual(cards[0].accent, cards[1].accent));
            for (const item of cards) {
                for (const row of rowsIn(item))
                    compareColor(row.accent, item.accent);
            }
        }

        function test_eachSectionHasItsTitleAndSymbol() {
            const panel = makePanel();
            const found = {};
            const flickable = flickableIn(panel);
            for (let top = 0; top < flickable.contentHeight; top += 200) {
                flickable.contentY = top;
                for (const item of cardsIn(panel))
                    found[item.title] = [symbolsIn(item)[0].name, item.subtitle];
            }
            const expected = {
                "CPU": ["cpu", "Package, cores, diode, PECI and CPU power"],
                "GRAPHICS": ["display", "iGPU / dGPU temperatures and activity"],
                "RAM": ["memorychip", "Memory sensors exposed by SMC"],
                "STORAGE": ["internaldrive", "NVMe / SATA media health keys"],
                "FANS": ["fanblades", "Tachometers and fan targets"],
                "VOLTAGES": ["waveform.path.ecg", "Voltage rails with real values only"],
                "POWER / BATTERY": ["bolt.fill", "Power, current and battery keys"],
                "THERMAL ZONES": ["thermometer.medium", "Board and misc thermal probes"]
            };
            verify(Object.keys(found).length >= 6, Object.keys(found).join());
            for (const title in found) {
                compare(found[title], expected[title]);
                verify(stage.hasDrawing(found[title][0]), found[title][0]);
            }
        }

        function test_pinsMarkTheRowsOfTheirReadings() {
            const panel = makePanel();
            stage.setPins(["TC0P"]);
            const pinned = rowIn(panel, "TC0P");
            verify(pinned.isMenuBarSelected);
            compare(pinned.toolTip, "Double-click to remove this key from the menu bar");
            compare(pinned.backgroundColors.length, 3);
            compareColor(pinned.backgroundColors[0], Panel.PanelStyle.tinted(Panel.PanelStyle.pin, 0.155));
            compare(rowsIn(panel).filter(row => row.isMenuBarSelected).length, 1);
        }

        function test_unpinningTakesMarkToolTipAndTintAwayTogether() {
            const panel = makePanel();
            stage.setPins(["TC0P"]);
            const row = rowIn(panel, "TC0P");
            verify(symbolNamesIn(row).includes("menubar.rectangle"));
            doubleClick(row);
            tryVerify(() => !row.isMenuBarSelected);
            compare(stage.pins(), []);
            verify(!symbolNamesIn(row).includes("menubar.rectangle"));
            compare(row.toolTip, "Double-click to add this key to the macOS menu bar");
            compare(row.backgroundColors.length, 2);
            compareColor(row.backgroundColors[0], Qt.rgba(1, 1, 1, 0.05));
            compareColor(row.backgroundColors[1], Qt.rgba(0, 0, 0, 0.2));
        }

        function test_aHiddenRowGoesAndTheCountWithIt() {
            const panel = makePanel();
            const cpu = card(panel, "CPU");
            const count = cpu.count;
            mouseClick(buttonIn(rowIn(panel, "TC0P"), "Hide this property from the list"));
            tryVerify(() => cpu.count === count - 1);
            compare(itemsIn(panel, item => item instanceof Panel.SensorRow && item.key === "TC0P").length, 0);
            compare(stage.hiddenKeys(), ["TC0P"]);
        }

        function test_hidingTheLastRowTakesTheCardAway() {
            const panel = makePanel();
            const cpu = card(panel, "CPU");
            while (card(panel, "CPU").count > 1) {
                stage.content.hideRow(rowsOf(card(panel, "CPU"))[0].key);
                wait(0);
            }
            mouseClick(buttonIn(rowsOf(card(panel, "CPU"))[0], "Hide this property from the list"));
            wait(0);
            verify(!cardsIn(panel).some(item => item.title === "CPU"));
            verify(cardsIn(panel).length > 0);
            verify(stage.hiddenKeys().length > 1);
        }
    }
}
