import QtQuick
import Kelvinbar.Panel as Panel

Item {
    id: board
    width: 462
    height: 690

    ViewTest {
        name: "ListCommands"

        function menuItemsIn(panel) {
            return itemsIn(board.Window.contentItem, item => item instanceof Panel.PanelMenuItem);
        }

        function menuItem(panel, text) {
            tryVerify(() => menuItemsIn(panel).some(item => item.text === text), 1000, text);
            return menuItemsIn(panel).find(item => item.text === text);
        }

        function noticeIn(panel) {
            return itemsIn(panel, item => item instanceof Panel.ListNotice)[0] ?? null;
        }

        function currentKey() {
            return stage.content.sensors.currentKey;
        }

        // The menu of a row

        function test_aRightClickOpensTheMenuOfTheRow() {
            const panel = makePanel();
            stage.setPins([]);
            mouseClick(rowIn(panel, "TC0P"), 60, 20, Qt.RightButton);
            mouseClick(menuItem(panel, "Show in menu bar"));
            wait(0);
            compare(stage.pins(), ["TC0P"]);
            tryCompare(menuItemsIn(panel), "length", 0);
        }

        function test_theMenuOffersWhatTheRowIsNot() {
            const panel = makePanel();
            stage.setPins(["TC0P"]);
            mouseClick(rowIn(panel, "TC0P"), 60, 20, Qt.RightButton);
            mouseClick(menuItem(panel, "Remove from menu bar"));
            wait(0);
            compare(stage.pins(), []);
        }

        function test_theMenuTellsTheValuesSinceTheStart() {
            const panel = makePanel();
            mouseClick(rowIn(panel, "TC0P"), 60, 20, Qt.RightButton);
            menuItem(panel, "Hide");
            const range = textsIn(board.Window.contentItem).find(item => item.text.startsWith("Lowest "));
            verify(/^Lowest \d+\S*\nHighest \d+\S*\nMean \d+\S*$/.test(range.text), range.text);
            keyClick(Qt.Key_Escape);
        }

        function test_theMenuHidesAndCopies() {
            const panel = makePanel();
            mouseClick(rowIn(panel, "TC0P"), 60, 20, Qt.RightButton);
            mouseClick(menuItem(panel, "Copy key"));
            compare(stage.clipboardText(), "TC0P");
            mouseClick(rowIn(panel, "TC0P"), 60, 20, Qt.RightButton);
            mouseClick(menuItem(panel, "Hide"));
            wait(0);
            compare(stage.hiddenKeys(), ["TC0P"]);
        }

        function test_keysOpenTheMenuOfTheCurrentRow_data() {
            return [{tag: "Menu", key: Qt.Key_Menu, modifiers: Qt.NoModifier},
                {tag: "Shift+F10", key: Qt.Key_F10, modifiers: Qt.ShiftModifier}];
        }

        function test_keysOpenTheMenuOfTheCurrentRow(data) {
            const panel = makePanel();
            stage.setPins([]);
            press(Qt.Key_Down, 2);
            const key = currentKey();
            keyClick(data.key, data.modifiers);
            menuItem(panel, "Hide");
            press(Qt.Key_Down);
            press(Qt.Key_Return);
            compare(stage.pins(), [key]);
            tryVerify(() => listIn(panel).activeFocus);
        }

        function test_escapeClosesTheMenuAndNotThePanel() {
            const panel = makePanel();
            press(Qt.Key_Down);
            press(Qt.Key_Menu);
            menuItem(panel, "Hide");
            press(Qt.Key_Escape);
            tryVerify(() => menuItemsIn(panel).length === 0);
            compare(stage.closings, 0);
            tryVerify(() => listIn(panel).activeFocus);
        }

        function test_aRightClickBesideTheRowsOpensNothing() {
            const panel = makePanel();
            mouseClick(listIn(panel), 60, 20, Qt.RightButton);
            wait(50);
            compare(menuItemsIn(panel).length, 0);
        }

        // Undoing

        function test_aHiddenRowIsOfferedBack() {
            const panel = makePanel();
            stage.setPins(["F0Ac", "TC0P"]);
            verify(noticeIn(panel) === null);
            const name = rowIn(panel, "TC0P").name;
            mouseClick(buttonIn(rowIn(panel, "TC0P"), "Hide this property from the list"));
            wait(0);
            verify(hasText(noticeIn(panel), "Hidden: \u2068" + name + "\u2069"));
            mouseClick(buttonIn(noticeIn(panel), "Undo"));
            wait(0);
            compare(stage.hiddenKeys(), []);
            compare(stage.pins(), ["F0Ac", "TC0P"]);
            verify(noticeIn(panel) === null);
            verify(rowIn(panel, "TC0P").visible);
        }

        function test_ctrlZBringsBackOneAfterTheOther() {
            makePanel();
            press(Qt.Key_Down);
            press(Qt.Key_Delete, 3);
            compare(stage.hiddenKeys().length, 3);
            for (let left = 2; left >= 0; --left) {
                keyClick(Qt.Key_Z, Qt.ControlModifier);
                compare(stage.hiddenKeys().length, left);
            }
        }

        function test_theNoticeLiesOverTheLowerEdgeOfTheList() {
            const panel = makePanel();
            press(Qt.Key_Down);
            press(Qt.Key_Delete);
            const [notice, list] = [placeOf(noticeIn(panel)), placeOf(listIn(panel))];
            verify(isInside(notice, list));
            verify(list.y + list.height - notice.y - notice.height < 20);
        }

        function test_showAllCarriesTheNumberOfHiddenRows() {
            const panel = makePanel();
            verify(hasText(buttonIn(panel, "ShowAll"), "ShowAll"));
            stage.hide("TC0P");
            stage.hide("F0Ac");
            verify(hasText(buttonIn(panel, "ShowAll"), "ShowAll 2"));
        }

        function test_theMenuOfShowAllBringsBackASingleRow_data() {
            return [{tag: "right click", isMouse: true}, {tag: "Menu", isMouse: false}];
        }

        function test_theMenuOfShowAllBringsBackASingleRow(data) {
            const panel = makePanel();
            const name = rowIn(panel, "TC0P").name;
            stage.hide("F0Ac");
            stage.hide("TC0P");
            const button = buttonIn(panel, "ShowAll");
            if (data.isMouse) {
                mouseClick(button, 10, 10, Qt.RightButton);
            } else {
                button.forceActiveFocus();
                press(Qt.Key_Menu);
            }
            compare(menuItem(panel, name).visible, true);
            compare(menuItemsIn(panel).length, 2);
            compare(stage.hiddenKeys().length, 2);
            mouseClick(menuItem(panel, name));
            wait(0);
            compare(stage.hiddenKeys(), ["F0Ac"]);
        }

        function test_withNothingHiddenShowAllHasNoMenu() {
            const panel = makePanel();
            mouseClick(buttonIn(panel, "ShowAll"), 10, 10, Qt.RightButton);
            wait(50);
            compare(menuItemsIn(panel).length, 0);
        }

        // Letters

        function test_lettersGoToARowAndEscapeFirstEndsTheSearch() {
            const panel = makePanel();
            for (const letter of "fan")
                keyClick(letter);
            wait(0);
            verify(listIn(panel).activeFocus);
            verify(rowIn(panel, currentKey()).name.toLowerCase().includes("fan"));
            verify(hasText(noticeIn(panel), "fan"));
            press(Qt.Key_Escape);
            compare(stage.closings, 0);
            verify(noticeIn(panel) === null);
            press(Qt.Key_Escape);
            compare(stage.closings, 1);
        }

        function test_duringASearchSpacePinsNothingAndBackspaceHidesNothing() {
            makePanel();
            stage.setPins([]);
            for (const letter of "cpu")
                keyClick(letter);
            press(Qt.Key_Space);
            compare(stage.content.search.text, "cpu ");
            press(Qt.Key_Backspace);
            compare(stage.content.search.text, "cpu");
            compare(stage.pins(), []);
            compare(stage.hiddenKeys(), []);
        }

        // Commands

        function test_f5Refreshes() {
            makePanel();
            press(Qt.Key_F5);
            verify(stage.isRefreshing());
        }

        function test_ctrlCCopiesTheCurrentRowAndWithShiftTheSnapshot() {
            const panel = makePanel();
            press(Qt.Key_Down);
            keyClick(Qt.Key_C, Qt.ControlModifier);
            verify(stage.clipboardText().includes("\t"));
            compare(stage.clipboardText().split("\n").length, 1);
            keyClick(Qt.Key_C, Qt.ControlModifier | Qt.ShiftModifier);
            compare(stage.clipboardText(), stage.exportText());
            verify(listIn(panel).activeFocus);
        }

        function test_plusAndMinusStepTheHeight() {
            makePanel();
            press(Qt.Key_Plus);
            compare(stage.height(), 690 + 96);
            press(Qt.Key_Minus);
            compare(stage.height(), 690 + 96 - 80);
        }

        function test_aStepperThatIsHeldRepeats() {
            const panel = makePanel();
            const button = buttonIn(panel, "Increase height");
            mousePress(button);
            tryVerify(() => stage.height() >= 690 + 3 * 96, 3000);
            mouseRelease(button);
        }

        function test_aStepperAtItsEndIsDimAndPressable() {
            const panel = makePanel();
            const [lower, higher] = [buttonIn(panel, "Decrease height"), buttonIn(panel, "Increase height")];
            const ink = symbolsIn(lower)[0].color.a;
            compare(symbolsIn(higher)[0].color.a, ink);
            stage.setHeight(560);
            verify(symbolsIn(lower)[0].color.a < ink / 2);
            compare(symbolsIn(higher)[0].color.a, ink);
            verify(lower.enabled);
            stage.setHeight(1400);
            verify(symbolsIn(higher)[0].color.a < ink / 2);
        }

        // Answers

        function test_copyAndRefreshAnswerForASecond() {
            const panel = makePanel();
            mouseClick(buttonIn(panel, "Copy"));
            mouseClick(buttonIn(panel, "Refresh"));
            verify(symbolNamesIn(buttonIn(panel, "Copy")).includes("checkmark.circle.fill"));
            verify(symbolNamesIn(buttonIn(panel, "Refresh")).includes("arrow.clockwise"), "it runs");
            stage.finishRefresh();
            verify(symbolNamesIn(buttonIn(panel, "Refresh")).includes("checkmark.circle.fill"));
            compare(buttonIn(panel, "Refresh").Accessible.description, "Nothing new");
            tryVerify(() => symbolNamesIn(buttonIn(panel, "Copy")).includes("doc.on.doc"), 3000);
            tryVerify(() => symbolNamesIn(buttonIn(panel, "Refresh")).includes("arrow.clockwise"), 3000);
        }

        // Scrolling

        function test_theMouseDoesNotDragTheList_data() {
            return [{tag: "a row", x: 60, y: 150}, {tag: "a header", x: 100, y: 40}, {tag: "a hide button", x: 418, y: 95},
                {tag: "beside the cards", x: 5, y: 100}];
        }

        function test_theMouseDoesNotDragTheList(place) {
            const panel = makePanel();
            const [list, flickable] = [listIn(panel), flickableIn(panel)];
            flickable.contentY = 40;
            mousePress(list, place.x, place.y);
            for (let distance = 0; distance <= 60; distance += 6)
                mouseMove(list, place.x, place.y - distance, 10, Qt.LeftButton);
            mouseRelease(list, place.x, place.y - 60);
            wait(100);
            compare(flickable.contentY, 40);
        }

        function test_aFingerFlicksTheList() {
            const panel = makePanel();
            const list = listIn(panel);
            const touch = touchEvent(list);
            touch.press(0, list, 60, 300).commit();
            for (let distance = 10; distance <= 120; distance += 10)
                touch.move(0, list, 60, 300 - distance).commit();
            touch.release(0, list, 60, 180).commit();
            tryVerify(() => flickableIn(panel).contentY > 60);
        }

        function test_aRefreshDoesNotStopAFlick() {
            const panel = makePanel();
            const flickable = flickableIn(panel);
            flickable.contentY = 100;
            flickable.flick(0, -2000);
            tryVerify(() => flickable.contentY > 150);
            const key = rowsIn(panel)[0].key;
            stage.hide("F0Ac");
            stage.refresh();
            stage.showAll();
            verify(flickable.flicking);
            verify(rowsIn(panel).length > 0, key);
            tryVerify(() => !flickable.moving, 5000);
        }

        function test_rowsThatComeAndGoDuringAFlickDoSoWhenItHasEnded() {
            const panel = makePanel();
            const flickable = flickableIn(panel);
            const height = flickable.contentHeight;
            flickable.flick(0, -1500);
            tryVerify(() => flickable.moving);
            stage.hide("TC0P");
            wait(20);
            verify(flickable.moving);
            compare(flickable.contentHeight, height);
            tryVerify(() => flickable.contentHeight < height, 5000);
        }

        // The height

        function test_theFooterTakesWhatDynamicModeGivesBeyondTheList() {
            stage.setDynamic(true);
            const panel = makePanel(462, 690);
            const flickable = flickableIn(panel);
            board.height = stage.dynamicHeight();
            settle(panel);
            compare(flickable.height, flickable.contentHeight);
            const footer = firstIn(panel, item => item instanceof Panel.PanelFooter, "footer");
            compare(footer.height, footer.implicitHeight + stage.content.spareHeight);
            verify(stage.content.spareHeight > 0);
            stage.setDynamic(false);
            settle(panel);
            compare(footer.height, footer.implicitHeight);
        }
    }
}
