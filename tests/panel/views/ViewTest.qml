import QtQuick
import QtTest
import Kelvinbar.Panel as Panel

/// The base of tests of views: has a stage of its own, and functions that find items.
TestCase {
    id: test

    /// The item that the views are put into.
    readonly property Item board: parent
    readonly property real pointsToPixels: 96 / 72

    when: windowShown

    function init() {
        failOnWarning(/Kelvinbar\/Panel/);
        stage.start();
    }

    /// The panel over the stage's content, filling the board.
    function makePanel(width, height) {
        board.width = width ?? 462;
        board.height = height ?? 690;
        const panel = createTemporaryObject(panelComponent, board, {content: stage.content});
        verify(panel !== null);
        panel.forceActiveFocus();
        settle(panel);
        return panel;
    }

    /// A single view with these properties.
    function make(component, properties) {
        const view = createTemporaryObject(component, board, properties);
        verify(view !== null);
        settle(view);
        return view;
    }

    function settle(view) {
        mouseMove(board, -5, -5);
        stage.layOut(view);
    }

    // Items

    /// The visible items among `root` and its descendants for which `isWanted` returns true, in order.
    function itemsIn(root, isWanted) {
        verify(root instanceof Item, "the item is gone");
        return stage.itemsIn(root).filter(item => isWanted(item));
    }

    /// The same for several items.
    function inAll(roots, itemsOf) {
        return roots.reduce((found, root) => found.concat(itemsOf(root)), []);
    }

    function firstIn(root, isWanted, what) {
        const found = itemsIn(root, isWanted);
        verify(found.length > 0, "there is no " + what);
        return found[0];
    }

    function textsIn(root) {
        return itemsIn(root, item => item instanceof Text && item.text.length > 0);
    }

    function textIn(root, text) {
        return firstIn(root, item => item instanceof Text && item.text === text, "text " + text);
    }

    function hasText(root, text) {
        return textsIn(root).some(item => item.text === text);
    }

    function buttonsIn(root) {
        return itemsIn(root, item => item instanceof Panel.PanelButton);
    }

    /// By its label or its tooltip.
    function buttonIn(root, name) {
        return firstIn(root, item => item instanceof Panel.PanelButton && (item.text === name || item.toolTip === name),
                       "button " + name);
    }

    function symbolsIn(root) {
        return itemsIn(root, item => item instanceof Panel.Symbol);
    }

    function symbolNamesIn(root) {
        return symbolsIn(root).map(item => item.name);
    }

    function digitsIn(root) {
        return itemsIn(root, item => item instanceof Panel.DigitsText);
    }

    function rowsIn(root) {
        return itemsIn(root, item => item instanceof Panel.SensorRow);
    }

    function rowIn(root, key) {
        return firstIn(root, item => item instanceof Panel.SensorRow && item.key === key, "row " + key);
    }

    function cardsIn(root) {
        return itemsIn(root, item => item instanceof Panel.SensorSectionCard);
    }

    function listIn(root) {
        return firstIn(root, item => item instanceof Panel.ReadingsList, "list");
    }

    function flickableIn(root) {
        return firstIn(root, item => item instanceof Flickable, "flickable");
    }

    function plateIn(root) {
        return firstIn(root, item => item instanceof Panel.Plate, "plate");
    }

    function popupOf(item, type) {
        for (let index = 0; index < item.resources.length; ++index) {
            if (item.resources[index] instanceof type)
                return item.resources[index];
        }
        fail("there is no such popup");
    }

    function toolTipOf(panel) {
        return popupOf(panel, Panel.PanelToolTip);
    }

    function aboutOf(panel) {
        return popupOf(buttonIn(panel, "About"), Panel.AboutPopoverView);
    }

    // Places

    /// In the window's coordinates.
    function placeOf(item) {
        return item.mapToItem(null, 0, 0, item.width, item.height);
    }

    function isInside(inner, outer) {
        const slack = 0.51;
        return inner.x >= outer.x - slack && inner.y >= outer.y - slack
            && inner.x + inner.width <= outer.x + outer.width + slack
            && inner.y + inner.height <= outer.y + outer.height + slack;
    }

    function doOverlap(first, second) {
        const slack = 0.01;
        return first.x + first.width > second.x + slack && second.x + second.width > first.x + slack
            && first.y + first.height > second.y + slack && second.y + second.height > first.y + slack;
    }

    // Colours and keys

    function compareColor(actual, expected) {
        const step = 1 / 255;
        const [found, wanted] = [Qt.darker(actual, 1), Qt.darker(expected, 1)]; // converts names of colours as well
        for (const channel of ["r", "g", "b", "a"])
            fuzzyCompare(found[channel], wanted[channel], step / 2);
    }

    function hasFocusRing(plate) {
        return Qt.colorEqual(plate.stroke, Panel.PanelStyle.focusRing);
    }

    function focusItem() {
        return board.Window.activeFocusItem;
    }

    function press(key, times) {
        for (let count = 0; count < (times ?? 1); ++count)
            keyClick(key);
        wait(0);
    }

    function doubleClick(item) {
        mouseDoubleClickSequence(item, item.width / 2, item.height / 2);
        wait(0);
    }

    Component {
        id: panelComponent

        Panel.MenuBarContentView {
            anchors.fill: parent
        }
    }
}
