import QtQuick
import Kelvinbar.Panel as Panel

Item {
    id: board
    width: 462
    height: 690

    ViewTest {
        name: "PanelToolTip"

        readonly property string fixedText: "Keeps the window at the compact standard size."
        readonly property string dynamicText: "Expands only the window height to show more keys, limited by the current screen visible area."

        function init() {
            stage.start();
            Panel.HoverTarget.item = null;
        }

        function pointAt(item) {
            mouseMove(item, item.width / 2 - 1, item.height / 2);
            mouseMove(item, item.width / 2, item.height / 2);
        }

        function pointAway() {
            mouseMove(board, 150, 20);
            mouseMove(board, 151, 20);
        }

        /// The tooltip of the item under the pointer, once it is open. It opens without its delay.
        function openToolTip(panel, item) {
            const tip = toolTipOf(panel);
            tip.delay = 10;
            pointAt(item);
            tryVerify(() => tip.opened, 3000);
            return tip;
        }

        function test_theToolTipOfAButtonComesAfterAWhile() {
            const panel = makePanel();
            const about = buttonIn(panel, "About");
            const tip = toolTipOf(panel);
            pointAt(about);
            verify(!tip.visible);
            tryVerify(() => tip.opened, 3000);
            compare(tip.text, "About");
            compare(textsIn(tip.contentItem).map(text => text.text), ["About"]);
        }

        function test_controlsShowTheirToolTips_data() {
            return [
                {tag: "Fast", text: "On: fast 1s sampling. Off: medium 3s sampling."},
                {tag: "Dynamic", text: fixedText},
                {tag: "Decrease height", text: "Decrease height"},
                {tag: "Reset height", text: "Reset height"},
                {tag: "Increase height", text: "Increase height"},
                {tag: "Login", text: "Enable or disable Kelvinbar as a macOS login item."},
                {tag: "ShowAll", text: "Show all hidden properties again"}
            ];
        }

        function test_controlsShowTheirToolTips(data) {
            const panel = makePanel();
            const tip = openToolTip(panel, buttonIn(panel, data.tag));
            compare(tip.text, data.text);
            verify(hasText(tip.contentItem, data.text));
        }

        function test_controlsWithoutAToolTipShowNone() {
            const panel = makePanel();
            const tip = openToolTip(panel, buttonIn(panel, "Login"));
            pointAt(buttonIn(panel, "Copy"));
            tryVerify(() => !tip.visible);
            wait(50);
            verify(!tip.visible);
            compare(tip.text, "");
        }

        function test_aRowTellsWhatADoubleClickDoes() {
            const panel = makePanel();
            const tip = openToolTip(panel, rowIn(panel, "TC0P"));
            compare(tip.text, "Double-click to add this key to the macOS menu bar");
        }

        function test_theTextFollowsThePinOfTheRow() {
            const panel = makePanel();
            stage.setPins([]);
            const tip = openToolTip(panel, rowIn(panel, "TC0P"));
            stage.setPins(["TC0P"]);
            compare(tip.text, "Double-click to remove this key from the menu bar");
            verify(tip.visible);
        }

        function test_theMarkAndTheHideButtonTellWhatTheyAre() {
            stage.setPins(["TC0P"]);
            const panel = makePanel();
            const row = rowIn(panel, "TC0P");
            const mark = firstIn(row, item => item.name === "menubar.rectangle", "mark");
            const tip = openToolTip(panel, mark);
            compare(tip.text, "Showing this key in the menu bar");
            pointAt(buttonIn(row, "Hide this property from the list"));
            tryVerify(() => tip.text === "Hide this property from the list");
            tryVerify(() => tip.opened, 3000);
            pointAt(row);
            tryVerify(() => tip.text === "Double-click to remove this key from the menu bar");
        }

        function test_theToolTipGoesWithThePointer() {
            const panel = makePanel();
            const tip = openToolTip(panel, buttonIn(panel, "About"));
            pointAway();
            tryVerify(() => !tip.visible);
            compare(Panel.HoverTarget.item, null);
        }

        function test_thereIsOneToolTipThatOfTheControlUnderThePointer() {
            const panel = makePanel();
            const tip = openToolTip(panel, buttonIn(panel, "Fast"));
            pointAt(buttonIn(panel, "Dynamic"));
            tryVerify(() => tip.text === fixedText);
            tryVerify(() => tip.opened, 3000);
            const places = itemsIn(board.Window.contentItem, item => item instanceof Text && item.text === "On: fast 1s sampling. Off: medium 3s sampling.");
            compare(places.length, 0);
        }

        function test_theOpenTextFollowsTheMode() {
            const panel = makePanel();
            const tip = openToolTip(panel, buttonIn(panel, "Dynamic"));
            compare(tip.text, fixedText);
            stage.setDynamic(true);
            compare(tip.text, dynamicText);
            verify(tip.visible);
            verify(hasText(tip.contentItem, dynamicText));
            stage.setDynamic(false);
            compare(tip.text, fixedText);
            verify(tip.visible);
        }

        function test_aRefreshLeavesTheToolTipOpen() {
            const panel = makePanel();
            const tip = openToolTip(panel, rowIn(panel, "TC0P"));
            for (let count = 0; count < 3; ++count) {
                stage.advanceClock(20);
                stage.refresh();
                wait(0);
                verify(tip.opened);
                compare(tip.text, "Double-click to add this key to the macOS menu bar");
            }
        }

        function test_pressingHidesIt() {
            const panel = makePanel();
            const fast = buttonIn(panel, "Fast");
            const tip = openToolTip(panel, fast);
            mousePress(fast);
            tryVerify(() => !tip.visible);
            mouseRelease(fast);
            wait(50);
            verify(!tip.visible);
        }

        function test_pressingARowHidesIt() {
            const panel = makePanel();
            const row = rowIn(panel, "TC0P");
            const tip = openToolTip(panel, row);
            mousePress(row);
            tryVerify(() => !tip.visible, 500);
            mouseRelease(row);
        }

        function test_itComesBackWhenThePointerDoes() {
            const panel = makePanel();
            const fast = buttonIn(panel, "Fast");
            const tip = openToolTip(panel, fast);
            mouseClick(fast);
            tryVerify(() => !tip.visible);
            pointAway();
            pointAt(fast);
            tryVerify(() => tip.opened, 3000);
        }

        function test_theToolTipOfAHiddenRowGoesWithIt() {
            const panel = makePanel();
            const tip = openToolTip(panel, rowIn(panel, "TC0P"));
            stage.hide("TC0P");
            tryVerify(() => tip.target === null || tip.target.toolTip !== undefined);
            pointAway();
            tryVerify(() => !tip.visible);
            compare(Panel.HoverTarget.item, null);
        }

        // What is cut

        readonly property string longName: "A sensor whose maker found very many words for what it measures and where"

        /// The first row of a panel with these rows in one card.
        function firstRowOf(panel, names, value) {
            stage.showReadings(names, value);
            stage.layOut(panel);
            return rowsIn(panel)[0];
        }

        function test_aNameThatIsCutIsToldInFullAboveWhatADoubleClickDoes() {
            const panel = makePanel();
            const tip = openToolTip(panel, firstRowOf(panel, [longName], "40"));
            compare(tip.text, "\u2068" + longName + "\u2069\nDouble-click to add this key to the macOS menu bar");
        }

        function test_aValueThatIsCutIsToldInFull() {
            const panel = makePanel();
            const value = "1234567890 ".repeat(6) + "W";
            const tip = openToolTip(panel, firstRowOf(panel, ["Brief"], value));
            compare(tip.text, value + "°\nDouble-click to add this key to the macOS menu bar");
        }

        function test_markupInANameIsToldAsItIs() {
            const panel = makePanel();
            const tip = openToolTip(panel, firstRowOf(panel, ["<b>" + longName + "</b>"], "40"));
            compare(tip.contentItem.textFormat, Text.PlainText);
            verify(tip.text.startsWith("\u2068<b>A sensor"));
        }

        function test_aSubtitleThatIsCutIsToldInFull() {
            const panel = makePanel(240, 690);
            const card = cardsIn(panel)[0];
            const subtitle = textIn(card, "Package, cores, diode, PECI and CPU power");
            verify(subtitle.truncated);
            const tip = openToolTip(panel, subtitle);
            compare(tip.text, "CPU, Package, cores, diode, PECI and CPU power");
        }

        function test_aSubtitleThatFitsHasNoToolTip() {
            const panel = makePanel();
            const subtitle = textIn(cardsIn(panel)[0], "Package, cores, diode, PECI and CPU power");
            pointAt(subtitle);
            verify(Panel.HoverTarget.item !== null);
            compare(Panel.HoverTarget.item.toolTip, "");
        }

        // Values of other rows

        function verifyCoversNoValue(panel, tip) {
            const place = placeOf(tip.background);
            verify(isInside(place, placeOf(board)), JSON.stringify(place));
            for (const digits of inAll(rowsIn(panel), digitsIn))
                verify(!doOverlap(place, placeOf(digits.parent)), digits.text);
        }

        function test_itCoversNoValueOfTheRowsAround_data() {
            const widths = [462, 420];
            return ["brief", "long"].reduce((rows, tag) => rows.concat(widths.map(width => ({tag: tag + " " + width, isLong: tag === "long", width: width}))), []);
        }

        function test_itCoversNoValueOfTheRowsAround(data) {
            const panel = makePanel(data.width);
            const names = Array.from({length: 20}, (unused, index) => (data.isLong ? longName + " " : "Probe ") + (index + 10));
            firstRowOf(panel, names, data.isLong ? "123456789012345678" : "40");
            for (const row of [rowsIn(panel)[1], rowsIn(panel)[7]])
                verifyCoversNoValue(panel, openToolTip(panel, row));
        }

        function test_thatOfTheHideButtonCoversNoValueOfTheRowsAround() {
            const panel = makePanel();
            const hide = buttonIn(rowIn(panel, "TC0P"), "Hide this property from the list");
            verifyCoversNoValue(panel, openToolTip(panel, hide));
        }

        function test_thatOfTheMarkCoversNoValueOfTheRowsAround() {
            stage.setPins(["TC0P"]);
            const panel = makePanel();
            const mark = firstIn(rowIn(panel, "TC0P"), item => item.name === "menubar.rectangle", "mark");
            verifyCoversNoValue(panel, openToolTip(panel, mark));
        }

        function test_aNameFromRightToLeftDoesNotTurnTheSentenceBelow() {
            const panel = makePanel();
            const tip = openToolTip(panel, firstRowOf(panel, ["מעבד ".repeat(40)], "40"));
            verify(tip.text.startsWith("\u2068מעבד"));
            compare(tip.contentItem.effectiveHorizontalAlignment, Text.AlignLeft);
        }

        // The keyboard

        function test_aButtonWithoutALabelShowsItsToolTipToTheKeyboard_data() {
            return [{tag: "About"}, {tag: "Decrease height"}, {tag: "Reset height"}, {tag: "Increase height"}];
        }

        function test_aButtonWithoutALabelShowsItsToolTipToTheKeyboard(data) {
            const panel = makePanel();
            const tip = toolTipOf(panel);
            tip.delay = 10;
            buttonIn(panel, data.tag).forceActiveFocus(Qt.TabFocusReason);
            tryVerify(() => tip.opened, 3000);
            compare(tip.text, data.tag);
            buttonIn(panel, "Copy").forceActiveFocus(Qt.TabFocusReason);
            tryVerify(() => !tip.visible);
        }

        function test_aRowThatIsCutShowsItsToolTipToTheKeyboard() {
            const panel = makePanel();
            firstRowOf(panel, [longName, "Brief"], "40");
            const tip = toolTipOf(panel);
            tip.delay = 10;
            press(Qt.Key_Down);
            tryVerify(() => tip.opened, 3000);
            verify(tip.text.startsWith("\u2068" + longName + "\u2069\n"));
            press(Qt.Key_Down);
            tryVerify(() => !tip.visible);
        }

        function test_aPressOnARowThatHasTheKeyboardHidesItToo() {
            const panel = makePanel();
            firstRowOf(panel, [longName, longName + "!"], "40");
            const tip = toolTipOf(panel);
            tip.delay = 10;
            press(Qt.Key_Down);
            tryVerify(() => tip.opened, 3000);
            const other = rowsIn(panel)[1];
            pointAt(other);
            mousePress(other);
            verify(other.activeFocus);
            wait(50);
            verify(!tip.visible);
            mouseRelease(other);
        }

        function test_itIsInsideTheWindowAndBesideItsControl_data() {
            const controls = ["About", "Fast", "Dynamic", "Decrease height", "Increase height", "Login", "ShowAll"];
            return [462, 420].reduce((rows, width) => rows.concat(controls.map(name => ({tag: name + " " + width, name: name, width: width}))), []);
        }

        function test_itIsInsideTheWindowAndBesideItsControl(data) {
            const panel = makePanel(data.width, 560);
            const control = buttonIn(panel, data.name);
            const tip = openToolTip(panel, control);
            const place = placeOf(tip.background);
            verify(isInside(place, placeOf(board)), JSON.stringify(place));
            verify(!doOverlap(place, placeOf(control)));
            const text = textsIn(tip.contentItem)[0];
            verify(!text.truncated);
            verify(isInside(placeOf(text), place));
        }
    }
}
