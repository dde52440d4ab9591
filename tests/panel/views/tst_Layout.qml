import QtQuick
import QtQuick.Templates as T
import Kelvinbar.Panel as Panel

Item {
    id: board
    width: 462
    height: 690

    ViewTest {
        name: "Layout"

        readonly property string longName: "A sensor whose maker found very many words for what it measures and where it does so"
        readonly property string longValue: "123456789012345678901234567890.123456789"

        function sizes() {
            return [
                {tag: "462 x 690", width: 462, height: 690}, {tag: "420 x 560", width: 420, height: 560},
                {tag: "420 x 1400", width: 420, height: 1400}, {tag: "462 x 560", width: 462, height: 560}
            ];
        }

        function frameOf(panel) {
            return [firstIn(panel, item => item instanceof Panel.PanelHeader, "header"),
                firstIn(panel, item => item instanceof Panel.PanelFooter, "footer")];
        }

        function isControl(item) {
            return item instanceof Panel.PanelButton;
        }

        /// The controls of header and footer, and the texts outside of controls.
        function controlsIn(root) {
            const buttons = buttonsIn(root);
            const lone = itemsIn(root, item => item instanceof Text || item instanceof Panel.DigitsText || item instanceof Panel.Artwork)
                .filter(item => !buttons.some(button => isAncestor(button, item)));
            return [...buttons, ...lone];
        }

        function isAncestor(ancestor, item) {
            for (let above = item.parent; above !== null; above = above.parent) {
                if (above === ancestor)
                    return true;
            }
            return false;
        }

        function buttonOf(item) {
            let above = item.parent;
            while (above !== null && !isControl(above))
                above = above.parent;
            return above;
        }

        function nameOf(item) {
            return item.text || item.toolTip || item.toString();
        }

        // Targets for a pointer

        readonly property real smallestTarget: 24

        /// Everything in the window that takes presses, popups included.
        function targets() {
            return itemsIn(board.Window.contentItem,
                           item => item.enabled && (item instanceof T.AbstractButton || item instanceof T.ScrollBar
                                                    || item instanceof MouseArea && item.acceptedButtons !== Qt.NoButton));
        }

        function verifyTargets() {
            for (const target of targets()) {
                verify(target.width >= smallestTarget && target.height >= smallestTarget,
                       nameOf(target) + " " + target.width + " x " + target.height);
            }
        }

        function scrollBarOf(panel) {
            return firstIn(listIn(panel), item => item instanceof T.ScrollBar, "scroll bar");
        }

        function test_everyTargetIsLargeEnoughForAPointer() {
            const panel = makePanel(420, 560);
            verify(targets().length > 15, targets().length);
            verify(targets().includes(scrollBarOf(panel)));
            verifyTargets();
        }

        function test_everyTargetOfMenuAndNoticeIsLargeEnough() {
            const panel = makePanel(420, 560);
            stage.content.hideRow(rowsIn(panel)[0].key);
            mouseClick(rowsIn(panel)[0], 30, 20, Qt.RightButton);
            tryVerify(() => targets().some(target => target instanceof Panel.PanelMenuItem));
            verify(targets().some(target => target.text === "Undo"));
            verifyTargets();
        }

        function test_everyTargetOfTheEmptyPanelAndOfAboutIsLargeEnough() {
            stage.startEmpty(true);
            const panel = makePanel(420, 560);
            mouseClick(buttonIn(panel, "About"));
            tryVerify(() => aboutOf(panel).opened);
            verifyTargets();
        }

        function test_theThumbOfAVeryLongListIsLargeEnough() {
            const names = [];
            for (let index = 0; index < 500; ++index)
                names.push("Core " + index);
            stage.showReadings(names, "48.0");
            const bar = scrollBarOf(makePanel(420, 560));
            verify(bar.contentItem.height >= smallestTarget, bar.contentItem.height);
        }

        function test_theScrollBarCoversNoRow() {
            const panel = makePanel(420, 560);
            verify(rowsIn(panel).length > 0);
            for (const row of rowsIn(panel))
                verify(!doOverlap(placeOf(scrollBarOf(panel)), placeOf(row)));
        }

        function test_noTwoControlsOfHeaderAndFooterOverlap_data() {
            return sizes();
        }

        function test_noTwoControlsOfHeaderAndFooterOverlap(size) {
            const panel = makePanel(size.width, size.height);
            stage.setHeight(1400);
            const controls = inAll(frameOf(panel), controlsIn);
            verify(controls.length >= 2 + 1 + 10 + 1, controls.length);
            for (let first = 0; first < controls.length; ++first) {
                for (let second = first + 1; second < controls.length; ++second) {
                    verify(!doOverlap(placeOf(controls[first]), placeOf(controls[second])),
                           nameOf(controls[first]) + " overlaps " + nameOf(controls[second]));
                }
            }
        }

        function test_controlsAreInsideTheWindowAndTheirPartOfIt_data() {
            return sizes();
        }

        function test_controlsAreInsideTheWindowAndTheirPartOfIt(size) {
            const panel = makePanel(size.width, size.height);
            stage.setHeight(1400);
            for (const part of frameOf(panel)) {
                verify(isInside(placeOf(part), placeOf(board)));
                for (const control of controlsIn(part)) {
                    verify(control.width > 0 && control.height > 0, nameOf(control));
                    verify(isInside(placeOf(control), placeOf(part)), nameOf(control) + " " + placeOf(control) + " outside " + placeOf(part));
                }
            }
        }

        function test_textsAndSymbolsAreWholeInsideTheirButtons_data() {
            return sizes();
        }

        function test_textsAndSymbolsAreWholeInsideTheirButtons(size) {
            const panel = makePanel(size.width, size.height);
            let count = 0;
            for (const button of inAll(frameOf(panel), buttonsIn)) {
                const parts = [...textsIn(button), ...symbolsIn(button)];
                verify(parts.length > 0, nameOf(button));
                for (const item of parts) {
                    verify(isInside(placeOf(item), placeOf(button)), nameOf(item) + " sticks out of " + nameOf(button));
                    verify(!(item.truncated ?? false), nameOf(item));
                    ++count;
                }
                for (let first = 0; first < parts.length; ++first) {
                    for (let second = first + 1; second < parts.length; ++second)
                        verify(!doOverlap(placeOf(parts[first]), placeOf(parts[second])), nameOf(button));
                }
            }
            verify(count > 15, count);
        }

        function test_noTextOfHeaderOrFooterIsCut_data() {
            return sizes();
        }

        function test_noTextOfHeaderOrFooterIsCut(size) {
            const panel = makePanel(size.width, size.height);
            for (const text of inAll(frameOf(panel), textsIn)) {
                verify(!text.truncated, text.text);
                verify(text.paintedWidth <= text.width + 0.51, text.text);
            }
            for (const digits of inAll(frameOf(panel), digitsIn))
                verify(digits.implicitWidth <= digits.width, digits.text);
        }

        function test_theLongestHeightHasRoomForItsDigits_data() {
            return sizes();
        }

        function test_theLongestHeightHasRoomForItsDigits(size) {
            const panel = makePanel(size.width, size.height);
            stage.setHeight(1400);
            const number = digitsIn(frameOf(panel)[1])[0];
            compare(number.text, "1400");
            verify(number.implicitWidth <= number.width);
        }

        function test_buttonsOfOneRowStandOnOneLine() {
            const panel = makePanel(420, 560);
            const row = firstIn(panel, item => item instanceof Panel.ActionRow, "row of actions");
            const places = buttonsIn(row).map(button => placeOf(button));
            compare(places.length, 5);
            for (const place of places) {
                compare(place.y, places[0].y);
                compare(place.height, places[0].height);
            }
            fuzzyCompare(places[0].x, 12, 0.51);
            fuzzyCompare(places[4].x + places[4].width, 420 - 12, 0.51);
        }

        function test_nothingOfTheListSticksOutOfItsCards_data() {
            return sizes();
        }

        function test_nothingOfTheListSticksOutOfItsCards(size) {
            const panel = makePanel(size.width, size.height);
            const flickable = flickableIn(panel);
            let texts = 0;
            for (let top = 0; top <= flickable.contentHeight - flickable.height; top += 150) {
                flickable.contentY = top;
                for (const card of cardsIn(panel)) {
                    verify(placeOf(card).x >= 0 && placeOf(card).x + card.width <= size.width);
                    for (const item of itemsIn(card, item => item !== card)) {
                        verify(isInside(placeOf(item), placeOf(card)), nameOf(item));
                        texts += item instanceof Text;
                    }
                }
            }
            verify(texts > 50, texts);
        }

        function test_subtitlesAndNamesOfTheDemoMachineDoNotWrap() {
            const panel = makePanel(420, 1400);
            for (const text of inAll(cardsIn(panel), textsIn))
                compare(text.lineCount, 1);
        }

        function test_theLongestNamesAndValuesStayInTheirRows_data() {
            return sizes();
        }

        function test_theLongestNamesAndValuesStayInTheirRows(size) {
            stage.showReadings([longName, longName + "!", longName + "?"], longValue);
            const panel = makePanel(size.width, size.height);
            const rows = rowsIn(panel);
            compare(rows.length, 3);
            for (const row of rows) {
                const [name, metadata] = textsIn(row);
                verify(name.truncated);
                compare(name.lineCount, 1);
                const value = digitsIn(row)[0];
                const chip = value.parent;
                const hide = buttonIn(row, "Hide this property from the list");
                verify(isInside(placeOf(value), placeOf(chip)));
                const parts = [name, metadata, chip, hide];
                for (let first = 0; first < parts.length; ++first) {
                    verify(isInside(placeOf(parts[first]), placeOf(row)));
                    for (let second = first + 1; second < parts.length; ++second)
                        verify(!doOverlap(placeOf(parts[first]), placeOf(parts[second])), first + " and " + second);
                }
            }
        }

        function test_aWindowThatOpensAsAStripDoesNotSqueezeThePanel() {
            const panel = makePanel(462, 120);
            const footer = placeOf(frameOf(panel)[1]);
            verify(footer.y + footer.height >= 560);
            const header = placeOf(frameOf(panel)[0]);
            verify(isInside(header, placeOf(board)));
            verify(!doOverlap(header, footer));
        }
    }
}
