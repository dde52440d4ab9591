import QtQuick
import Kelvinbar.Panel as Panel

Item {
    id: board
    width: 462
    height: 690

    Component {
        id: quitComponent

        Panel.ActionRow {
            width: 438
        }
    }

    ViewTest {
        name: "PanelFooter"

        function footerOf(panel) {
            return firstIn(panel, item => item instanceof Panel.PanelFooter, "footer");
        }

        function heightShown(panel) {
            return digitsIn(footerOf(panel))[0].text;
        }

        // Checks

        function test_theChecksHaveTitlesSubtitlesAndSymbols() {
            const footer = footerOf(makePanel());
            const fast = buttonIn(footer, "Fast");
            const dynamic = buttonIn(footer, "Dynamic");
            compare(textsIn(fast).map(text => text.text), ["Fast", "1s"]);
            compare(symbolNamesIn(fast), ["circle", "speedometer"]);
            compare(textsIn(dynamic).map(text => text.text), ["Dynamic", "vertical"]);
            compare(symbolNamesIn(dynamic), ["circle", "rectangle.expand.vertical"]);
            verify(fast instanceof Panel.CompactCheckButton);
            verify(dynamic instanceof Panel.CompactCheckButton);
        }

        function test_aCheckHasItsMarkThenItsSymbolThenItsLabels() {
            const fast = buttonIn(makePanel(), "Fast");
            const places = [...symbolsIn(fast), textIn(fast, "Fast")].map(item => placeOf(item));
            verify(places[0].x + places[0].width <= places[1].x);
            verify(places[1].x + places[1].width <= places[2].x);
            verify(placeOf(textIn(fast, "1s")).y >= places[2].y + places[2].height - 1);
        }

        function test_fastTogglesTheRateAndItsMark() {
            const fast = buttonIn(makePanel(), "Fast");
            verify(!stage.isFast());
            mouseClick(fast);
            verify(stage.isFast());
            tryVerify(() => symbolNamesIn(fast)[0] === "checkmark.circle.fill");
            compareColor(symbolsIn(fast)[0].color, fast.tint);
            compareColor(symbolsIn(fast)[1].color, fast.tint);
            mouseClick(fast);
            verify(!stage.isFast());
            tryVerify(() => symbolNamesIn(fast)[0] === "circle");
            verify(!Qt.colorEqual(symbolsIn(fast)[0].color, fast.tint));
        }

        function test_fastTellsBothRates() {
            const fast = buttonIn(makePanel(), "Fast");
            compare(fast.toolTip, "On: fast 1s sampling. Off: medium 3s sampling.");
            mouseClick(fast);
            compare(fast.toolTip, "On: fast 1s sampling. Off: medium 3s sampling.");
        }

        function test_dynamicTogglesTheModeAndItsMark() {
            const dynamic = buttonIn(makePanel(), "Dynamic");
            verify(!stage.isDynamic());
            mouseClick(dynamic);
            verify(stage.isDynamic());
            tryVerify(() => symbolNamesIn(dynamic)[0] === "checkmark.circle.fill");
            mouseClick(dynamic);
            verify(!stage.isDynamic());
            tryVerify(() => symbolNamesIn(dynamic)[0] === "circle");
        }

        function test_theToolTipOfDynamicIsThatOfTheMode() {
            const dynamic = buttonIn(makePanel(), "Dynamic");
            compare(dynamic.toolTip, "Keeps the window at the compact standard size.");
            stage.setDynamic(true);
            compare(dynamic.toolTip, "Expands only the window height to show more keys, limited by the current screen visible area.");
            stage.setDynamic(false);
            compare(dynamic.toolTip, "Keeps the window at the compact standard size.");
        }

        function test_theMarksFollowTheStore() {
            const dynamic = buttonIn(makePanel(), "Dynamic");
            stage.setDynamic(true);
            compare(symbolNamesIn(dynamic)[0], "checkmark.circle.fill");
            verify(dynamic.checked);
            stage.setDynamic(false);
            compare(symbolNamesIn(dynamic)[0], "circle");
            verify(!dynamic.checked);
        }

        function test_aClickDoesNotMoveTheMarkWithoutTheStore() {
            stage.setLoginItemWorks(false);
            const login = buttonIn(makePanel(), "Login");
            mouseClick(login);
            wait(0);
            compare(symbolNamesIn(login), ["square"]);
            verify(!login.checked);
            stage.setLoginItemWorks(true);
            mouseClick(login);
            tryVerify(() => login.checked);
            compare(symbolNamesIn(login), ["checkmark.square.fill"]);
        }

        // Height

        function test_theStepperHasThreeButtonsAroundTheNumber() {
            const panel = makePanel();
            const stepper = firstIn(panel, item => item instanceof Panel.HeightStepper, "stepper");
            compare(buttonsIn(stepper).map(button => button.toolTip).sort(), ["Decrease height", "Increase height", "Reset height"]);
            compare(symbolNamesIn(buttonIn(stepper, "Decrease height")), ["minus"]);
            compare(symbolNamesIn(buttonIn(stepper, "Reset height")), ["arrow.counterclockwise"]);
            compare(symbolNamesIn(buttonIn(stepper, "Increase height")), ["plus"]);
            const left = ["Decrease height", "Reset height", "Increase height"].map(name => placeOf(buttonIn(stepper, name)).x);
            const number = placeOf(digitsIn(stepper)[0]).x;
            verify(left[0] < number && number < left[1] && left[1] < left[2]);
            compare(heightShown(panel), "690");
        }

        function test_theNumberOfTheStepperHasALabelBelow() {
            const stepper = firstIn(makePanel(), item => item instanceof Panel.HeightStepper, "stepper");
            const number = placeOf(digitsIn(stepper)[0]);
            const label = placeOf(textIn(stepper, "height"));
            verify(label.y >= number.y + number.height);
            fuzzyCompare(label.x + label.width / 2, number.x + number.width / 2, 0.51);
            verify(isInside(label, placeOf(stepper)));
        }

        function test_minusGoesDownByEightyAsFarAsTheStoreLets() {
            const panel = makePanel();
            const heights = [];
            for (let click = 0; click < 3; ++click) {
                mouseClick(buttonIn(panel, "Decrease height"));
                heights.push(stage.height());
            }
            compare(heights, [610, 560, 560]);
            tryVerify(() => heightShown(panel) === "560");
        }

        function test_plusGoesUpByNinetySixAsFarAsTheStoreLets() {
            const panel = makePanel();
            mouseClick(buttonIn(panel, "Increase height"));
            compare(stage.height(), 786);
            tryVerify(() => heightShown(panel) === "786");
            stage.setHeight(1400);
            mouseClick(buttonIn(panel, "Increase height"));
            compare(stage.height(), 1400);
            tryVerify(() => heightShown(panel) === "1400");
        }

        function test_resetGoesToTheStandard() {
            const panel = makePanel();
            stage.setHeight(1000);
            tryVerify(() => heightShown(panel) === "1000");
            mouseClick(buttonIn(panel, "Reset height"));
            compare(stage.height(), 690);
            tryVerify(() => heightShown(panel) === "690");
        }

        function test_quickClicksAreAllCounted() {
            const panel = makePanel();
            stage.clickTwice(buttonIn(panel, "Increase height"), 50);
            compare(stage.height(), 690 + 2 * 96);
            stage.clickTwice(buttonIn(panel, "Fast"), 50);
            verify(!stage.isFast());
        }

        // Actions

        function test_theActionsStandInTheirOrderWithTheirSymbols() {
            const footer = footerOf(makePanel());
            const row = firstIn(footer, item => item instanceof Panel.ActionRow, "row of actions");
            const buttons = buttonsIn(row).sort((first, second) => first.x - second.x);
            compare(buttons.map(button => button.text), ["Login", "Refresh", "Copy", "ShowAll", "Quit"]);
            compare(buttons.map(button => symbolNamesIn(button)), [["square"], ["arrow.clockwise"], ["doc.on.doc"], ["eye"], ["xmark.square"]]);
            for (const button of buttons) {
                verify(button instanceof Panel.MenuFooterButtonStyle);
                verify(hasText(button, button.text));
                verify(stage.hasDrawing(symbolNamesIn(button)[0]));
            }
            verify(placeOf(row).y > placeOf(buttonIn(footer, "Fast")).y);
        }

        function test_actionsHaveTheirToolTips() {
            const panel = makePanel();
            compare(buttonIn(panel, "Login").toolTip, "Enable or disable Kelvinbar as a macOS login item.");
            compare(buttonIn(panel, "ShowAll").toolTip, "Show all hidden properties again");
        }

        function test_loginTogglesTheLoginItemAndItsMark() {
            const login = buttonIn(makePanel(), "Login");
            mouseClick(login);
            verify(stage.startsAtLogin());
            compare(symbolNamesIn(login), ["checkmark.square.fill"]);
            mouseClick(login);
            verify(!stage.startsAtLogin());
            compare(symbolNamesIn(login), ["square"]);
        }

        function test_refreshStartsARefresh() {
            const panel = makePanel();
            verify(!stage.isLoading());
            mouseClick(buttonIn(panel, "Refresh"));
            verify(stage.isRefreshing());
        }

        function test_copyPutsTheSnapshotOnTheClipboard() {
            stage.setClipboardText("something else");
            mouseClick(buttonIn(makePanel(), "Copy"));
            compare(stage.clipboardText(), stage.exportText());
            verify(stage.exportText().includes("TC0P"));
        }

        function test_showAllBringsBackWhatIsHidden() {
            const panel = makePanel();
            stage.hide("TC0P");
            verify(!rowsIn(panel).some(row => row.key === "TC0P"));
            mouseClick(buttonIn(panel, "ShowAll"));
            compare(stage.hiddenKeys(), []);
            tryVerify(() => rowsIn(panel).some(row => row.key === "TC0P"));
        }

        function test_showAllWithNothingHiddenChangesNothing() {
            const panel = makePanel();
            const before = rowsIn(panel);
            mouseClick(buttonIn(panel, "ShowAll"));
            wait(0);
            const after = rowsIn(panel);
            compare(after.length, before.length);
            for (const [index, row] of after.entries())
                verify(row === before[index]);
        }

        function test_quitAsksToQuitOnce() {
            const row = make(quitComponent, {controls: stage.makeControls("", "", ""), hidden: stage.content.hidden});
            mouseClick(buttonIn(row, "Quit"));
            compare(stage.quits, 1);
        }

        function test_aButtonActsWhenItIsLetGoInside() {
            const fast = buttonIn(makePanel(), "Fast");
            mousePress(fast, 10, 10);
            verify(!stage.isFast());
            mouseMove(fast, 10, -200);
            mouseRelease(fast, 10, -200);
            verify(!stage.isFast());
        }
    }
}
