import QtQuick
import Kelvinbar.Panel as Panel

Item {
    id: board
    width: 462
    height: 690

    ViewTest {
        name: "Refresh"

        function rowsByKey(panel) {
            const rows = {};
            for (const row of rowsIn(panel))
                rows[row.key] = row;
            return rows;
        }

        function refreshLater() {
            stage.advanceClock(30);
            stage.refresh();
            wait(0);
        }

        function test_valuesChangeInRowsThatStayTheSame() {
            const panel = makePanel();
            const before = rowsByKey(panel);
            const values = Object.keys(before).map(key => before[key].valueText);
            refreshLater();
            const after = rowsByKey(panel);
            compare(Object.keys(after).sort(), Object.keys(before).sort());
            verify(Object.keys(before).length > 5);
            for (const key in before)
                verify(after[key] === before[key], key);
            verify(Object.keys(after).map(key => after[key].valueText).some((value, index) => value !== values[index]));
        }

        function test_aChangedValueIsTheOneThatIsDrawn() {
            const panel = makePanel();
            const before = rowsByKey(panel);
            const drawn = {};
            for (const key in before)
                drawn[key] = digitsIn(before[key])[0].text;
            refreshLater();
            let changes = 0;
            for (const key in before) {
                const text = digitsIn(before[key])[0].text;
                compare(text, before[key].valueText);
                changes += text !== drawn[key];
            }
            verify(changes > 0);
        }

        function test_partsOfARowStayTheSame() {
            const panel = makePanel();
            const row = rowIn(panel, "TC0P");
            const before = itemsIn(row, item => true);
            refreshLater();
            const after = itemsIn(rowIn(panel, "TC0P"), item => true);
            compare(after.length, before.length);
            verify(before.length > 5);
            for (const [index, item] of after.entries())
                verify(item === before[index]);
        }

        function test_cardsStayTheSame() {
            const panel = makePanel();
            const before = cardsIn(panel);
            refreshLater();
            const after = cardsIn(panel);
            compare(after.length, before.length);
            for (const [index, card] of after.entries())
                verify(card === before[index]);
        }

        function test_pinningKeepsTheRows() {
            const panel = makePanel();
            const before = rowsByKey(panel);
            stage.setPins(["TC0P"]);
            const after = rowsByKey(panel);
            for (const key in before)
                verify(after[key] === before[key], key);
        }

        function test_hidingARowKeepsTheOthers() {
            const panel = makePanel();
            const before = rowsByKey(panel);
            stage.hide("TC0P");
            const after = rowsByKey(panel);
            verify(!("TC0P" in after));
            let kept = 0;
            for (const key in before) {
                if (key in after) {
                    verify(after[key] === before[key], key);
                    ++kept;
                }
            }
            verify(kept > 3);
        }

        function test_theListStaysWhereItWasScrolledTo() {
            const panel = makePanel();
            const flickable = flickableIn(panel);
            flickable.contentY = 333;
            const rows = rowsByKey(panel);
            for (let count = 0; count < 3; ++count) {
                refreshLater();
                compare(flickable.contentY, 333);
            }
            for (const key in rows)
                verify(rowsByKey(panel)[key] === rows[key]);
        }

        function test_theHoveredRowStaysHovered() {
            const panel = makePanel();
            const row = rowIn(panel, "TC0P");
            mouseMove(row, 30, 20);
            tryVerify(() => row.isHovered);
            refreshLater();
            verify(row.isHovered);
            verify(rowIn(panel, "TC0P") === row);
            compare(rowsIn(panel).filter(item => item.isHovered).length, 1);
        }

        function test_theHoveredRowStaysUnderThePointerWhenRowsComeAboveIt_data() {
            return [{tag: "at the top", top: 0}, {tag: "scrolled", top: 200}];
        }

        function test_theHoveredRowStaysUnderThePointerWhenRowsComeAboveIt(data) {
            const panel = makePanel();
            const flickable = flickableIn(panel);
            const above = rowsIn(panel).sort((first, second) => first.rowTop - second.rowTop).slice(0, 3).map(row => row.key);
            for (const key of above)
                stage.hide(key);
            flickable.contentY = data.top;
            const list = placeOf(listIn(panel));
            const row = rowsIn(panel).find(item => isInside(placeOf(item), list) && placeOf(item).y > list.y + 100);
            mouseMove(row, 30, 20);
            tryVerify(() => row.isHovered);
            const place = placeOf(row);
            const top = flickable.contentY;
            stage.showAll();
            wait(0);
            verify(flickable.contentY > top);
            compare(placeOf(row), place);
            verify(row.isHovered);
        }

        function test_withoutAHoveredRowWhatComesAtTheTopIsSeen() {
            const panel = makePanel();
            const first = rowsIn(panel).sort((one, other) => one.rowTop - other.rowTop)[0].key;
            stage.hide(first);
            stage.showAll();
            wait(0);
            compare(flickableIn(panel).contentY, 0);
            verify(isInside(placeOf(rowIn(panel, first)), placeOf(listIn(panel))));
        }

        function test_theListStaysInsideItsBoundsWhenRowsGo() {
            const panel = makePanel();
            const flickable = flickableIn(panel);
            flickable.contentY = flickable.contentHeight - flickable.height;
            for (let count = 0; count < 20; ++count) {
                stage.hide(rowsIn(panel)[0].key);
                wait(0);
                verify(flickable.contentY <= Math.max(0, flickable.contentHeight - flickable.height) + 0.01);
                verify(rowsIn(panel).length > 0);
            }
        }

        function test_aRefreshBetweenTheClicksOfADoubleClickMovesNoRow() {
            const panel = makePanel();
            stage.setPins([]);
            const [first, above, row] = rowsIn(panel).sort((one, other) => one.rowTop - other.rowTop);
            const [value, place, key] = [first.valueText, placeOf(row), above.key];
            mousePress(row, 30, 20);
            mouseRelease(row, 30, 20);
            stage.hide(key);
            refreshLater();
            verify(first.valueText !== value);
            compare(placeOf(row), place);
            verify(rowIn(panel, key).visible);
            tryVerify(() => rowsIn(panel).every(item => item.key !== key), 3000);
            compare(stage.pins(), []);
        }

        function test_everyPressAtOnePlaceHidesARow_data() {
            return [{tag: "the first row of ten", number: 0, presses: 10}, {tag: "beside the line that offers to undo", number: 7, presses: 3}];
        }

        function test_everyPressAtOnePlaceHidesARow(data) {
            const panel = makePanel();
            const whole = rowsIn(panel).filter(item => isInside(placeOf(item), placeOf(listIn(panel))))
                .sort((one, other) => one.rowTop - other.rowTop);
            const button = buttonIn(whole[data.number], "Hide this property from the list");
            const place = placeOf(button);
            for (let count = 1; count <= data.presses; ++count) {
                stage.clickAt(panel, place.x + place.width / 2, place.y + place.height / 2, 40);
                compare(stage.hiddenKeys().length, count);
            }
            compare(stage.pins(), []);
        }
    }
}
