import QtQuick
import Kelvinbar.Panel as Panel

Item {
    id: board
    width: 462
    height: 690

    ViewTest {
        name: "Keyboard"

        function currentRow(panel) {
            const rows = rowsIn(panel).filter(row => row.activeFocus);
            compare(rows.length, 1);
            return rows[0];
        }

        function rowsInOrder(panel) {
            return rowsIn(panel).sort((first, second) => placeOf(first).y - placeOf(second).y);
        }

        /// The panel with the keyboard at the first row.
        function makePanelAtFirstRow() {
            const panel = makePanel();
            press(Qt.Key_Down);
            compare(currentRow(panel), rowsInOrder(panel)[0]);
            return panel;
        }

        function nameOfFocus() {
            const item = focusItem();
            return item instanceof Panel.SensorRow ? "list" : item.text || item.toolTip;
        }

        // From control to control

        function test_tabGoesThroughHeaderListAndFooter() {
            makePanel();
            const names = [];
            for (let count = 0; count < 12; ++count) {
                press(Qt.Key_Tab);
                names.push(nameOfFocus());
            }
            compare(names, ["About", "list", "Fast", "Dynamic", "Decrease height", "Reset height", "Increase height",
                "Login", "Refresh", "Copy", "ShowAll", "Quit"]);
            press(Qt.Key_Tab);
            compare(nameOfFocus(), "About");
        }

        function test_backtabGoesTheOtherWay() {
            makePanel();
            press(Qt.Key_Tab, 3);
            compare(nameOfFocus(), "Fast");
            keyClick(Qt.Key_Backtab, Qt.ShiftModifier);
            compare(nameOfFocus(), "list");
            keyClick(Qt.Key_Backtab, Qt.ShiftModifier);
            compare(nameOfFocus(), "About");
            keyClick(Qt.Key_Backtab, Qt.ShiftModifier);
            compare(nameOfFocus(), "Quit");
        }

        function test_tabLeavesAnEmptyListOut() {
            stage.startEmpty(true);
            makePanel();
            press(Qt.Key_Tab);
            compare(nameOfFocus(), "About");
            press(Qt.Key_Tab);
            compare(nameOfFocus(), "Fast");
        }

        function test_theControlWithTheKeyboardHasTheFocusRingAlone() {
            const panel = makePanel();
            for (let count = 0; count < 12; ++count) {
                press(Qt.Key_Tab);
                const ringed = itemsIn(panel, item => item instanceof Panel.Plate && hasFocusRing(item));
                compare(ringed.length, 1, nameOfFocus());
                compare(placeOf(ringed[0]), placeOf(focusItem()));
            }
        }

        function test_noControlHasTheFocusRingAtFirst() {
            const panel = makePanel();
            compare(itemsIn(panel, item => item instanceof Panel.Plate && hasFocusRing(item)).length, 0);
        }

        function test_aClickDoesNotMoveTheFocusRingToTheButton() {
            const panel = makePanel();
            mouseClick(buttonIn(panel, "Fast"));
            verify(!buttonIn(panel, "Fast").activeFocus);
            verify(!hasFocusRing(buttonIn(panel, "Fast").plate));
        }

        function test_hideButtonsAreNotOnTheWayOfTab() {
            const panel = makePanel();
            for (const row of rowsIn(panel))
                verify(!buttonIn(row, "Hide this property from the list").activeFocusOnTab);
            verify(rowsIn(panel).length > 0);
        }

        // Buttons

        function test_keysPressTheButtonWithTheKeyboard_data() {
            return [{tag: "Return", key: Qt.Key_Return}, {tag: "Enter", key: Qt.Key_Enter}, {tag: "Space", key: Qt.Key_Space}];
        }

        function test_keysPressTheButtonWithTheKeyboard(data) {
            const panel = makePanel();
            press(Qt.Key_Tab, 3);
            press(data.key);
            verify(stage.isFast());
            tryVerify(() => buttonIn(panel, "Fast").checked);
            press(data.key);
            verify(!stage.isFast());
            tryVerify(() => !buttonIn(panel, "Fast").checked);
        }

        function test_keysPressTheSmallButtonsToo_data() {
            return [{tag: "Return", key: Qt.Key_Return}, {tag: "Enter", key: Qt.Key_Enter}, {tag: "Space", key: Qt.Key_Space}];
        }

        function test_keysPressTheSmallButtonsToo(data) {
            makePanel();
            press(Qt.Key_Tab, 7);
            compare(nameOfFocus(), "Increase height");
            press(data.key);
            compare(stage.height(), 786);
        }

        function test_theKeyboardStaysAtTheButtonThatItPressed() {
            makePanel();
            press(Qt.Key_Tab, 3);
            press(Qt.Key_Return);
            compare(nameOfFocus(), "Fast");
        }

        // The list

        function test_arrowsGoFromRowToRow() {
            const panel = makePanelAtFirstRow();
            const rows = rowsInOrder(panel);
            press(Qt.Key_Down);
            compare(currentRow(panel), rows[1]);
            press(Qt.Key_Down);
            compare(currentRow(panel), rows[2]);
            press(Qt.Key_Up, 2);
            compare(currentRow(panel), rows[0]);
            press(Qt.Key_Up);
            compare(currentRow(panel), rows[0]);
        }

        function test_arrowsGoOnInTheNextCard() {
            const panel = makePanelAtFirstRow();
            const first = cardsIn(panel).find(card => card.title === "CPU");
            press(Qt.Key_Down, first.count);
            const row = currentRow(panel);
            const card = cardsIn(panel).find(item => isInside(placeOf(row), placeOf(item)));
            verify(card.title !== "CPU");
        }

        function test_theRowWithTheKeyboardStaysOnTheScreen() {
            const panel = makePanelAtFirstRow();
            for (let count = 0; count < 40; ++count) {
                press(Qt.Key_Down);
                verify(isInside(placeOf(currentRow(panel)), placeOf(listIn(panel))));
            }
            verify(flickableIn(panel).contentY > 0);
            for (let count = 0; count < 40; ++count) {
                press(Qt.Key_Up);
                verify(isInside(placeOf(currentRow(panel)), placeOf(listIn(panel))));
            }
            compare(flickableIn(panel).contentY, 0);
        }

        function test_endAndHomeGoToTheLastAndFirstRow() {
            const panel = makePanelAtFirstRow();
            const first = currentRow(panel).key;
            press(Qt.Key_End);
            const flickable = flickableIn(panel);
            const last = currentRow(panel);
            verify(isInside(placeOf(last), placeOf(listIn(panel))));
            press(Qt.Key_Down);
            compare(currentRow(panel), last);
            flickable.contentY = flickable.contentHeight - flickable.height;
            const rows = rowsInOrder(panel);
            compare(last, rows[rows.length - 1]);
            press(Qt.Key_Home);
            compare(currentRow(panel).key, first);
            compare(flickable.contentY, 0);
        }

        function test_pagesAreOfTheHeightOfTheList() {
            const panel = makePanelAtFirstRow();
            const first = currentRow(panel).key;
            press(Qt.Key_PageDown);
            verify(currentRow(panel).key !== first);
            verify(flickableIn(panel).contentY > 0);
            verify(isInside(placeOf(currentRow(panel)), placeOf(listIn(panel))));
            press(Qt.Key_PageUp);
            compare(currentRow(panel).key, first);
        }

        function test_keysPinTheRowAndUnpinIt_data() {
            return [{tag: "Return", key: Qt.Key_Return}, {tag: "Enter", key: Qt.Key_Enter}, {tag: "Space", key: Qt.Key_Space}];
        }

        function test_keysPinTheRowAndUnpinIt(data) {
            const panel = makePanelAtFirstRow();
            stage.setPins([]);
            const row = currentRow(panel);
            press(data.key);
            compare(stage.pins(), [row.key]);
            tryVerify(() => row.isMenuBarSelected);
            verify(row.activeFocus);
            verify(hasFocusRing(plateIn(row)));
            press(data.key);
            compare(stage.pins(), []);
        }

        function test_keysHideTheRowAndGoOnWithTheNext_data() {
            return [{tag: "Delete", key: Qt.Key_Delete}, {tag: "Backspace", key: Qt.Key_Backspace}];
        }

        function test_keysHideTheRowAndGoOnWithTheNext(data) {
            const panel = makePanelAtFirstRow();
            const [first, second] = rowsInOrder(panel).map(row => row.key);
            press(data.key);
            compare(stage.hiddenKeys(), [first]);
            tryVerify(() => rowsInOrder(panel)[0].key === second);
            compare(currentRow(panel).key, second);
            verify(hasFocusRing(plateIn(currentRow(panel))));
        }

        function test_aRefreshLeavesTheKeyboardAtItsRow() {
            const panel = makePanelAtFirstRow();
            press(Qt.Key_Down, 3);
            const row = currentRow(panel);
            stage.advanceClock(30);
            stage.refresh();
            compare(currentRow(panel), row);
        }

        function test_theListKeepsItsRowWhileTheKeyboardIsElsewhere() {
            const panel = makePanelAtFirstRow();
            press(Qt.Key_Down, 2);
            const row = currentRow(panel);
            press(Qt.Key_Tab);
            compare(nameOfFocus(), "Fast");
            verify(!hasFocusRing(plateIn(row)));
            keyClick(Qt.Key_Backtab, Qt.ShiftModifier);
            compare(currentRow(panel), row);
        }

        function test_theListIsEnteredAtTheFirstRowOnTheScreen() {
            const panel = makePanel();
            flickableIn(panel).contentY = 400;
            press(Qt.Key_Tab, 2);
            const row = currentRow(panel);
            verify(isInside(placeOf(row), placeOf(listIn(panel))));
            const above = rowsIn(panel).filter(item => isInside(placeOf(item), placeOf(listIn(panel))) && placeOf(item).y < placeOf(row).y);
            compare(above.length, 0);
        }

        function test_theKeyboardGetsAlongWithoutRows() {
            stage.startEmpty(true);
            const pins = stage.pins();
            makePanel();
            for (const key of [Qt.Key_Down, Qt.Key_Up, Qt.Key_Return, Qt.Key_Space, Qt.Key_Delete, Qt.Key_End])
                press(key);
            compare(stage.pins(), pins);
            compare(stage.hiddenKeys(), []);
        }

        // Escape

        function test_escapeClosesThePanelFromEverywhere() {
            makePanel();
            press(Qt.Key_Escape);
            compare(stage.closings, 1);
            for (let count = 0; count < 12; ++count) {
                press(Qt.Key_Tab);
                press(Qt.Key_Escape);
                compare(stage.closings, count + 2, nameOfFocus());
            }
        }
    }
}
