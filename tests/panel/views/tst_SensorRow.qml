import QtQuick
import Kelvinbar.Panel

Item {
    id: board
    width: 462
    height: 690

    Component {
        id: rowComponent

        SensorRow {
            key: "TC0P"
            name: "CPU Proximity"
            metadata: "sp78 • °C"
            valueText: "48.0°"
            isMenuBarSelected: false
            toolTip: "what the row's tooltip says"
            backgroundColors: ["#20304050"]
            number: 3
            rowTop: 10
            accent: "#64d2ff"
            content: stage.content
            width: 438
            height: 42
        }
    }

    ViewTest {
        name: "SensorRow"

        function chipOf(row) {
            return digitsIn(row)[0].parent;
        }

        function pinMarkOf(row) {
            return itemsIn(row, item => item.name === "menubar.rectangle")[0] ?? null;
        }

        function test_aRowShowsItsNameAboveItsMetadataAndItsValue() {
            const row = make(rowComponent, {});
            compare(textsIn(row).map(text => text.text), ["CPU Proximity", "sp78 • °C"]);
            compare(digitsIn(row).map(text => text.text), ["48.0°"]);
            const name = placeOf(textIn(row, "CPU Proximity"));
            const metadata = placeOf(textIn(row, "sp78 • °C"));
            verify(name.y + name.height <= metadata.y);
            compare(name.x, metadata.x);
            verify(placeOf(chipOf(row)).x >= name.x + name.width);
        }

        function test_theTextsHaveTheirSizesWeightsAndInks() {
            const row = make(rowComponent, {});
            const name = textIn(row, "CPU Proximity");
            fuzzyCompare(name.font.pointSize * pointsToPixels, 11.2, 0.01);
            compare(name.font.weight, Font.Bold);
            compareColor(name.color, Qt.rgba(1, 1, 1, 0.84));
            const metadata = textIn(row, "sp78 • °C");
            fuzzyCompare(metadata.font.pointSize * pointsToPixels, 8.7, 0.01);
            compare(metadata.font.weight, Font.Bold);
            compareColor(metadata.color, Qt.rgba(1, 1, 1, 0.34));
            verify(digitsIn(row)[0].font.weight >= Font.ExtraBold);
        }

        function test_aRowShowsTextThatLooksLikeMarkupAsItIs() {
            const row = make(rowComponent, {name: "<b>CPU</b> &amp;", metadata: "<i>flt</i>"});
            for (const text of textsIn(row))
                compare(text.textFormat, Text.PlainText);
            compare(textsIn(row).length, 2);
        }

        function test_aPinnedRowHasTheMarkAndItsToolTip() {
            const row = make(rowComponent, {isMenuBarSelected: true});
            const mark = pinMarkOf(row);
            verify(mark !== null);
            compare(mark.toolTip, "Showing this key in the menu bar");
            const place = placeOf(mark);
            verify(place.width > 0);
            verify(isInside(place, placeOf(row)));
            verify(place.x + place.width <= placeOf(chipOf(row)).x);
        }

        function test_aRowThatIsNotPinnedHasNoMark() {
            compare(pinMarkOf(make(rowComponent, {})), null);
        }

        function test_theMarkComesAndGoesWithThePin() {
            const row = make(rowComponent, {});
            row.isMenuBarSelected = true;
            verify(pinMarkOf(row) !== null);
            row.isMenuBarSelected = false;
            compare(pinMarkOf(row), null);
        }

        function test_thePointerOnTheMarkTellsWhatTheMarkIs() {
            const row = make(rowComponent, {isMenuBarSelected: true});
            mouseMove(row, 20, 20);
            tryVerify(() => HoverTarget.item !== null);
            compare(HoverTarget.item.toolTip, "what the row's tooltip says");
            mouseMove(pinMarkOf(row), 5, 5);
            tryVerify(() => HoverTarget.item.toolTip === "Showing this key in the menu bar");
            mouseMove(row, 20, 20);
            tryVerify(() => HoverTarget.item.toolTip === "what the row's tooltip says");
            mouseMove(board, 5, 300);
            tryVerify(() => HoverTarget.item === null);
        }

        function test_theValueHasARoundedChipInTheSectionsAccent() {
            const row = make(rowComponent, {});
            const chip = chipOf(row);
            compare(chip.radius, chip.height / 2);
            compareColor(chip.stroke, PanelStyle.tinted("#64d2ff", 0.3));
            verify(isInside(placeOf(digitsIn(row)[0]), placeOf(chip)));
        }

        function test_theHideButtonIsAMinusInASmallCircle() {
            const row = make(rowComponent, {});
            const hide = buttonIn(row, "Hide this property from the list");
            compare(symbolNamesIn(hide), ["minus"]);
            compare(hide.width, hide.height);
            compare(hide.plate.radius, hide.plate.height / 2);
            verify(hide.plate.height < hide.height);
            verify(hide.plate.stroke.a > 0);
            verify(isInside(placeOf(hide), placeOf(row)));
            verify(placeOf(hide).x >= placeOf(chipOf(row)).x + chipOf(row).width);
        }

        function test_theBackgroundIsThatOfTheReading() {
            const row = make(rowComponent, {});
            row.backgroundColors = ["#11223344", "#55667788"];
            const plate = plateIn(row);
            compare(plate.colors.length, 2);
            compareColor(plate.colors[0], "#11223344");
            compareColor(plate.colors[1], "#55667788");
            verify(!plate.isVertical);
            verify(plate.stroke.a > 0);
            compare(placeOf(plate), placeOf(row));
        }

        // What clicks do

        function test_aDoubleClickPinsAndAnotherUnpins() {
            const row = make(rowComponent, {});
            stage.setPins([]);
            doubleClick(row);
            compare(stage.pins(), ["TC0P"]);
            doubleClick(row);
            compare(stage.pins(), []);
        }

        function test_aDoubleClickPinsAnywhereOnTheRow_data() {
            return [
                {tag: "name", x: 20, y: 12}, {tag: "metadata", x: 20, y: 30}, {tag: "left edge", x: 1, y: 20},
                {tag: "value", x: 360, y: 20}, {tag: "bottom", x: 200, y: 39}
            ];
        }

        function test_aDoubleClickPinsAnywhereOnTheRow(place) {
            const row = make(rowComponent, {});
            stage.setPins([]);
            mouseDoubleClickSequence(row, place.x, place.y);
            compare(stage.pins(), ["TC0P"]);
        }

        function test_aDoubleClickOnTheMarkUnpins() {
            stage.setPins(["TC0P"]);
            const row = make(rowComponent, {isMenuBarSelected: true});
            doubleClick(pinMarkOf(row));
            compare(stage.pins(), []);
        }

        function test_aSingleClickDoesNothing() {
            const row = make(rowComponent, {});
            const pins = stage.pins();
            mouseClick(row, 20, 20);
            wait(Qt.styleHints.mouseDoubleClickInterval + 50);
            compare(stage.pins(), pins);
            compare(stage.hiddenKeys(), []);
        }

        function test_twoClicksInTheDoubleClickIntervalPin() {
            const row = make(rowComponent, {});
            stage.setPins([]);
            stage.clickTwice(row, Qt.styleHints.mouseDoubleClickInterval / 2);
            compare(stage.pins(), ["TC0P"]);
        }

        function test_twoClicksFurtherApartDoNothing() {
            const row = make(rowComponent, {});
            stage.setPins([]);
            stage.clickTwice(row, Qt.styleHints.mouseDoubleClickInterval + 1);
            compare(stage.pins(), []);
        }

        function test_theOtherButtonsOfTheMouseDoNothing() {
            const row = make(rowComponent, {});
            stage.setPins([]);
            mouseDoubleClickSequence(row, 20, 20, Qt.RightButton);
            mouseDoubleClickSequence(row, 20, 20, Qt.MiddleButton);
            compare(stage.pins(), []);
        }

        function test_theHideButtonHidesAtOnceAndDoesNotPin() {
            const row = make(rowComponent, {});
            stage.setPins([]);
            mouseClick(buttonIn(row, "Hide this property from the list"));
            compare(stage.hiddenKeys(), ["TC0P"]);
            compare(stage.pins(), []);
        }

        function test_aDoubleClickOnTheHideButtonNeverPins() {
            const row = make(rowComponent, {});
            stage.setPins([]);
            doubleClick(buttonIn(row, "Hide this property from the list"));
            compare(stage.pins(), []);
            compare(stage.hiddenKeys(), ["TC0P"]);
        }

        function test_twoQuickClicksOnTheHideButtonNeverPin() {
            const row = make(rowComponent, {});
            stage.setPins([]);
            stage.clickTwice(buttonIn(row, "Hide this property from the list"), 50);
            compare(stage.pins(), []);
            compare(stage.hiddenKeys(), ["TC0P"]);
        }

        function test_aClickOnTheRowAndOneOnTheHideButtonDoNotPin() {
            const row = make(rowComponent, {});
            stage.setPins([]);
            mouseClick(row, 200, 20);
            mouseClick(buttonIn(row, "Hide this property from the list"));
            compare(stage.pins(), []);
            compare(stage.hiddenKeys(), ["TC0P"]);
        }

        // Long texts

        function test_aLongNameElidesBesideTheValue_data() {
            return [
                {tag: "396", width: 396, pinned: false}, {tag: "438", width: 438, pinned: false},
                {tag: "396 pinned", width: 396, pinned: true}, {tag: "438 pinned", width: 438, pinned: true},
                {tag: "narrowest card", width: 380, pinned: true}
            ];
        }

        function test_aLongNameElidesBesideTheValue(place) {
            const row = make(rowComponent, {
                width: place.width, isMenuBarSelected: place.pinned,
                name: "A sensor whose maker found very many words for what it measures and where",
                metadata: "and a metadata line that is much longer than any that a sensor has had so far, by far"
            });
            const brief = make(rowComponent, {name: "X", metadata: "Y"});
            const leftmost = place.pinned ? pinMarkOf(row) : chipOf(row);
            for (const [index, text] of textsIn(row).entries()) {
                verify(text.truncated);
                compare(text.lineCount, 1);
                compare(text.height, textsIn(brief)[index].height);
                verify(!doOverlap(placeOf(text), placeOf(leftmost)));
                verify(isInside(placeOf(text), placeOf(row)));
                verify(text.width > 100);
            }
        }

        function test_aNameWithALineBreakStaysInsideItsRow() {
            const row = make(rowComponent, {name: "CPU\nProximity", metadata: "sp78"});
            const texts = textsIn(row);
            compare(texts.length, 2);
            for (const text of texts)
                verify(isInside(placeOf(text), placeOf(row)));
            verify(!doOverlap(placeOf(texts[0]), placeOf(texts[1])));
        }

        function test_aLongValueElidesInsideTheChip_data() {
            return [{tag: "396", width: 396}, {tag: "438", width: 438}];
        }

        function test_aLongValueElidesInsideTheChip(place) {
            const row = make(rowComponent, {
                width: place.width, valueText: "a value of a length that no chip of the panel could ever have room for 123456789"
            });
            const value = digitsIn(row)[0];
            verify(value.implicitWidth > value.width);
            verify(isInside(placeOf(value), placeOf(chipOf(row))));
            verify(chipOf(row).width <= row.width / 2);
            verify(isInside(placeOf(chipOf(row)), placeOf(row)));
            verify(textIn(row, "CPU Proximity").width > 60);
            verify(!doOverlap(placeOf(textIn(row, "CPU Proximity")), placeOf(chipOf(row))));
        }

        function test_aValueThatFitsIsWhole() {
            const row = make(rowComponent, {valueText: "1234 rpm"});
            const value = digitsIn(row)[0];
            compare(value.width, value.implicitWidth);
        }

        function test_valuesOfOneLengthHaveChipsOfOneWidth() {
            const row = make(rowComponent, {valueText: "111111111.1°"});
            const width = chipOf(row).width;
            row.valueText = "888888888.8°";
            compare(chipOf(row).width, width);
        }

        // Scripts from right to left

        /// The columns in which `name` is drawn, from the left edge of its text.
        function inkColumnsOf(row, name) {
            const text = textsIn(row)[0];
            const place = text.mapToItem(row, 0, 0);
            row.name = "";
            stage.layOut(row);
            const empty = grabImage(row);
            row.name = name;
            stage.layOut(row);
            const drawn = grabImage(row);
            const columns = [];
            for (let x = 0; x < text.width; ++x) {
                const lines = Array.from({length: Math.floor(text.height)}, (unused, line) => place.y + line);
                if (lines.some(y => drawn.red(place.x + x, y) !== empty.red(place.x + x, y)))
                    columns.push(x);
            }
            return columns;
        }

        function test_aNameFromRightToLeftBeginsWhereTheOthersDo_data() {
            return [{tag: "Hebrew", name: "מעבד"}, {tag: "Arabic", name: "معالج"}, {tag: "mixed", name: "מעבד CPU 1"}];
        }

        function test_aNameFromRightToLeftBeginsWhereTheOthersDo(data) {
            const row = make(rowComponent, {metadata: "قدرة"});
            const columns = inkColumnsOf(row, data.name);
            verify(columns.length > 0);
            verify(columns[0] < 5, columns[0]);
            verify(columns[columns.length - 1] < 120, columns[columns.length - 1]);
            for (const text of textsIn(row))
                compare(text.effectiveHorizontalAlignment, Text.AlignLeft);
        }

        function test_aLongNameFromRightToLeftKeepsItsBeginning() {
            const row = make(rowComponent, {});
            const columns = inkColumnsOf(row, "מעבד ".repeat(40));
            verify(textsIn(row)[0].truncated);
            verify(columns[columns.length - 1] > textsIn(row)[0].width - 20);
        }

        // Screen readers

        function test_aRowIsCalledAsItsSensor() {
            const row = make(rowComponent, {});
            compare(row.Accessible.name, "CPU Proximity");
            row.valueText = "49.0°";
            compare(row.Accessible.name, "CPU Proximity");
        }

        function test_theDescriptionTellsValueAndPlaceAndWhatTheKeysDo() {
            const total = stage.content.sensors.rowTotal;
            compare(make(rowComponent, {}).Accessible.description,
                    "48.0°, 3 of " + total + ". sp78 • °C. Enter: Show in menu bar. Delete: Hide.");
            compare(make(rowComponent, {isMenuBarSelected: true}).Accessible.description,
                    "48.0°, 3 of " + total + ". Showing this key in the menu bar. sp78 • °C. "
                    + "Enter: Remove from menu bar. Delete: Hide.");
        }

        function test_theDescriptionKeepsItsValueWhileTheRowHasTheKeyboard() {
            const row = make(rowComponent, {});
            row.forceActiveFocus();
            verify(row.activeFocus);
            row.valueText = "49.0°";
            verify(row.Accessible.description.startsWith("48.0°, "));
            row.focus = false;
            verify(row.Accessible.description.startsWith("49.0°, "));
        }

        // The column of values

        function rightEdgeOf(item) {
            return placeOf(item).x + placeOf(item).width;
        }

        function test_aValueAloneIsInTheMiddleOfItsChip() {
            const row = make(rowComponent, {valueText: "29°"});
            const [chip, value] = [placeOf(chipOf(row)), placeOf(digitsIn(row)[0])];
            fuzzyCompare(value.x - chip.x, rightEdgeOf(chipOf(row)) - value.x - value.width, 1.01);
        }

        function test_valuesOfAColumnEndAtOneLine() {
            const wide = make(rowComponent, {valueText: "100.25°", columnWidth: 60});
            const narrow = make(rowComponent, {valueText: "29°", columnWidth: 60});
            compare(rightEdgeOf(digitsIn(wide)[0]), rightEdgeOf(digitsIn(narrow)[0]));
            compare(placeOf(chipOf(wide)), placeOf(chipOf(narrow)));
        }

        function test_aColumnOfLongValuesWidensEveryChip() {
            const row = make(rowComponent, {valueText: "29°", columnWidth: 120});
            compare(chipOf(row).width, 138);
            fuzzyCompare(rightEdgeOf(digitsIn(row)[0]), rightEdgeOf(chipOf(row)) - 9, 0.01);
        }
    }
}
