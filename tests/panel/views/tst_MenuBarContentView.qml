import QtQuick
import Kelvinbar.Panel as Panel

Item {
    id: board
    width: 462
    height: 690

    ViewTest {
        name: "MenuBarContentView"

        readonly property var middleViews: [Panel.ReadingsList, Panel.LoadingView, Panel.EmptyReadingsView, Panel.UnavailableView]

        function viewsInTheMiddle(panel) {
            return itemsIn(panel, item => middleViews.some(type => item instanceof type));
        }

        function theOneInTheMiddle(panel, type) {
            const views = viewsInTheMiddle(panel);
            compare(views.length, 1);
            verify(views[0] instanceof type, views[0]);
            return views[0];
        }

        function verifyIsCentred(panel, view) {
            const place = placeOf(view);
            fuzzyCompare(place.x + place.width / 2, board.width / 2, 1);
            const middle = placeOf(view.parent);
            fuzzyCompare(place.y + place.height / 2, middle.y + middle.height / 2, 1);
            verify(isInside(place, middle));
        }

        // Scanning

        function test_whileThereIsNothingToShowItTellsThatItScans() {
            stage.startScanning();
            const panel = makePanel();
            verify(stage.isLoading());
            const view = theOneInTheMiddle(panel, Panel.LoadingView);
            const label = textIn(view, "Scanning SMC sensors…");
            compare(label.font.weight, Font.Bold);
            compareColor(label.color, Qt.rgba(1, 1, 1, 0.55));
            verifyIsCentred(panel, view);
        }

        function test_theRingIsAboveTheTextTwelvePointsApart() {
            stage.startScanning();
            const view = theOneInTheMiddle(makePanel(), Panel.LoadingView);
            const ring = placeOf(firstIn(view, item => item instanceof Panel.ProgressRing, "ring"));
            fuzzyCompare(placeOf(textsIn(view)[0]).y - ring.y - ring.height, 12, 0.01);
        }

        function test_theRingStandsStillWhereMotionIsReduced() {
            stage.startScanning();
            const view = theOneInTheMiddle(makePanel(), Panel.LoadingView);
            const ring = firstIn(view, item => item instanceof Panel.ProgressRing, "ring");
            verify(!ring.isRunning);
            view.reducedMotion = false;
            verify(ring.isRunning);
            const step = ring.step;
            tryVerify(() => ring.step !== step);
            stage.finishRefresh();
            tryVerify(() => !ring.isRunning);
        }

        function test_theSectionsComeWhenTheScanEnds() {
            stage.startScanning();
            const panel = makePanel();
            stage.finishRefresh();
            tryVerify(() => viewsInTheMiddle(panel)[0] instanceof Panel.ReadingsList);
            theOneInTheMiddle(panel, Panel.ReadingsList);
            verify(cardsIn(panel).length > 0);
        }

        // Sections

        function test_readingsAreShownInCards() {
            const panel = makePanel();
            theOneInTheMiddle(panel, Panel.ReadingsList);
            verify(cardsIn(panel).length > 0);
            verify(!hasText(panel, "Scanning SMC sensors…"));
        }

        function test_aRefreshThatRunsLeavesTheSectionsInView() {
            const panel = makePanel();
            stage.beginRefresh();
            wait(0);
            verify(stage.isRefreshing());
            theOneInTheMiddle(panel, Panel.ReadingsList);
            verify(rowsIn(panel).length > 0);
            stage.finishRefresh();
            verify(!stage.isRefreshing());
            theOneInTheMiddle(panel, Panel.ReadingsList);
        }

        function test_cardsLieTwelvePointsFromTheEdgesAndTenApart() {
            const panel = makePanel();
            const list = placeOf(listIn(panel));
            const cards = cardsIn(panel).sort((first, second) => first.cardTop - second.cardTop);
            fuzzyCompare(placeOf(cards[0]).y - list.y, 12, 0.01);
            for (const card of cards) {
                fuzzyCompare(placeOf(card).x, 12, 0.01);
                fuzzyCompare(placeOf(card).width, 462 - 24, 0.01);
            }
            flickableIn(panel).contentY = 300;
            const later = cardsIn(panel).sort((first, second) => first.cardTop - second.cardTop);
            verify(later.length > 1);
            fuzzyCompare(later[1].y - later[0].y - later[0].height, 10, 0.01);
            const flickable = flickableIn(panel);
            flickable.contentY = flickable.contentHeight - flickable.height;
            const last = cardsIn(panel).sort((first, second) => second.cardTop - first.cardTop)[0];
            fuzzyCompare(placeOf(listIn(panel)).y + flickable.height - placeOf(last).y - last.height, 12, 0.01);
        }

        function test_onlyCardsOnTheScreenAreBuilt() {
            const panel = makePanel();
            const list = placeOf(listIn(panel));
            for (const card of cardsIn(panel))
                verify(doOverlap(placeOf(card), list));
            verify(!cardsIn(panel).some(card => card.title === "THERMAL ZONES"));
            flickableIn(panel).contentY = flickableIn(panel).contentHeight - flickableIn(panel).height;
            verify(cardsIn(panel).some(card => card.title === "THERMAL ZONES"));
            verify(!cardsIn(panel).some(card => card.title === "CPU"));
        }

        function test_theScrollIndicatorIsShownWhileThereIsMoreThanFits() {
            const panel = makePanel();
            const list = listIn(panel);
            const bars = itemsIn(list, item => item.minimumSize !== undefined && item.size !== undefined);
            compare(bars.length, 1);
            verify(bars[0].size > 0 && bars[0].size < 1);
            const place = placeOf(bars[0]);
            verify(isInside(place, placeOf(list)));
            verify(place.width > 0 && place.height > 100);
            stage.showReadings(["Core 1"], "48.0");
            tryVerify(() => itemsIn(list, item => item === bars[0]).length === 0);
        }

        function test_theWheelScrollsTheList() {
            const panel = makePanel();
            const flickable = flickableIn(panel);
            mouseWheel(listIn(panel), 200, 200, 0, -240);
            tryVerify(() => flickable.contentY > 0);
        }

        // Nothing found

        function test_whereNothingCanBeShownItTellsWhy() {
            stage.startEmpty(true);
            const panel = makePanel();
            const view = theOneInTheMiddle(panel, Panel.EmptyReadingsView);
            compare(textsIn(view).map(text => text.text), [
                "No sensor with a real value was found",
                "The app filters empty keys and shows only sensors that return a real value."
            ]);
            verifyIsCentred(panel, view);
        }

        function test_theTextsOfNothingFoundHaveTheirSizesAndInks() {
            stage.startEmpty(true);
            const view = theOneInTheMiddle(makePanel(), Panel.EmptyReadingsView);
            const [title, explanation] = textsIn(view);
            const symbol = symbolsIn(view)[0];
            compare(symbol.name, "line.3.horizontal.decrease.circle");
            verify(stage.hasDrawing(symbol.name));
            compare(symbol.size, 34);
            compareColor(symbol.color, Qt.rgba(1, 1, 1, 0.38));
            fuzzyCompare(title.font.pointSize * pointsToPixels, 13, 0.01);
            compare(title.font.weight, Font.Black);
            compareColor(title.color, Qt.rgba(1, 1, 1, 0.66));
            fuzzyCompare(explanation.font.pointSize * pointsToPixels, 11, 0.01);
            compare(explanation.font.weight, Font.DemiBold);
            compareColor(explanation.color, Qt.rgba(1, 1, 1, 0.38));
            verify(explanation.width <= 300);
            verify(!explanation.truncated);
            verify(explanation.lineCount > 1);
        }

        function test_nothingFoundTellsHowManyReadingsAreHidden() {
            const panel = makePanel();
            for (let row = rowsIn(panel)[0]; row !== undefined; row = rowsIn(panel)[0]) {
                stage.hide(row.key);
                stage.layOut(panel);
            }
            const view = theOneInTheMiddle(panel, Panel.EmptyReadingsView);
            const count = stage.hiddenKeys().length;
            verify(count > 1);
            verify(hasText(view, count + " readings are hidden."));
            verifyIsCentred(panel, view);
            mouseClick(buttonIn(view, "ShowAll"));
            compare(stage.hiddenKeys(), []);
            tryVerify(() => rowsIn(panel).length > 0);
        }

        function test_nothingFoundOffersNothingWhereNothingIsHidden() {
            stage.startEmpty(true);
            const view = theOneInTheMiddle(makePanel(), Panel.EmptyReadingsView);
            compare(buttonsIn(view).length, 0);
            compare(textsIn(view).length, 2);
        }

        // Screen readers

        function test_whatIsShownInPlaceOfReadingsIsANotification() {
            stage.startScanning();
            compare(theOneInTheMiddle(makePanel(), Panel.LoadingView).Accessible.role, Accessible.Notification);
            stage.startEmpty(true);
            compare(theOneInTheMiddle(makePanel(), Panel.EmptyReadingsView).Accessible.role, Accessible.Notification);
            stage.startEmpty(false);
            compare(theOneInTheMiddle(makePanel(), Panel.UnavailableView).Accessible.role, Accessible.Notification);
        }

        // System facts

        function statusLinesIn(panel) {
            return itemsIn(panel, item => item instanceof Panel.StatusLine);
        }

        function test_aboveFactsOfTheSystemALineTellsThatNoSensorIsRead() {
            stage.startWithSystemFacts();
            const panel = makePanel();
            compare(textsIn(statusLinesIn(panel)[0]).map(text => text.text),
                    ["AppleSMC unavailable; showing native macOS telemetry"]);
            const line = placeOf(textsIn(statusLinesIn(panel)[0])[0]);
            const list = placeOf(listIn(panel));
            compare(line.y + line.height, list.y);
            compare(line.x, placeOf(cardsIn(panel)[0]).x);
        }

        function test_aboveSensorsThereIsNoLine() {
            const panel = makePanel();
            compare(statusLinesIn(panel).length, 0);
            compare(placeOf(listIn(panel)).y, placeOf(listIn(panel).parent).y);
        }

        function test_theItemsOfNothingFoundAreElevenPointsApart() {
            stage.startEmpty(true);
            const view = theOneInTheMiddle(makePanel(), Panel.EmptyReadingsView);
            const places = [symbolsIn(view)[0], ...textsIn(view)].map(item => placeOf(item));
            fuzzyCompare(places[1].y - places[0].y - places[0].height, 11, 0.01);
            fuzzyCompare(places[2].y - places[1].y - places[1].height, 11, 0.01);
        }

        function test_hidingEveryRowLeavesNothingFoundAndShowAllBringsThemBack() {
            const panel = makePanel();
            for (let count = 0; count < 500 && rowsIn(panel).length > 0; ++count)
                stage.hide(rowsIn(panel)[0].key);
            theOneInTheMiddle(panel, Panel.EmptyReadingsView);
            mouseClick(buttonIn(panel, "ShowAll"));
            tryVerify(() => rowsIn(panel).length > 0);
            theOneInTheMiddle(panel, Panel.ReadingsList);
            compare(stage.hiddenKeys(), []);
        }

        // Unavailable

        function test_withoutAControllerItShowsTheStoresMessageAsItIs() {
            stage.startEmpty(false);
            const panel = makePanel();
            const view = theOneInTheMiddle(panel, Panel.UnavailableView);
            verify(stage.statusMessage().length > 0);
            compare(textsIn(view).map(text => text.text), [stage.statusMessage()]);
            compare(textsIn(view)[0].textFormat, Text.PlainText);
            verify(!textsIn(view)[0].truncated);
            compare(symbolNamesIn(view), ["exclamationmark.triangle.fill"]);
            verify(stage.hasDrawing("exclamationmark.triangle.fill"));
            verifyIsCentred(panel, view);
            const symbol = placeOf(symbolsIn(view)[0]);
            fuzzyCompare(placeOf(textsIn(view)[0]).y - symbol.y - symbol.height, 12, 0.01);
        }

        // The whole

        function test_headerListAndFooterFollowEachOtherFromTopToBottom() {
            const panel = makePanel();
            const header = placeOf(firstIn(panel, item => item instanceof Panel.PanelHeader, "header"));
            const list = placeOf(listIn(panel));
            const footer = placeOf(firstIn(panel, item => item instanceof Panel.PanelFooter, "footer"));
            const dividers = itemsIn(panel, item => item instanceof Panel.MetalDivider).map(item => placeOf(item));
            compare(header.y, 0);
            compare(dividers.length, 2);
            compare(dividers[0].y, header.height);
            compare(list.y, dividers[0].y + dividers[0].height);
            compare(list.y + list.height, dividers[1].y);
            compare(footer.y, dividers[1].y + dividers[1].height);
            compare(footer.y + footer.height, board.height);
            const backdrop = firstIn(panel, item => item instanceof Panel.MenuMetalBackground, "backdrop");
            compare(placeOf(backdrop), placeOf(panel));
        }

        function test_aTallerWindowGivesItsHeightToTheList() {
            const panel = makePanel();
            const height = listIn(panel).height;
            const rows = rowsIn(panel).length;
            board.height = 990;
            stage.layOut(panel);
            compare(listIn(panel).height, height + 300);
            verify(rowsIn(panel).length > rows);
        }

        function test_everySymbolThatIsShownHasADrawing() {
            stage.setPins(["TC0P"]);
            const panel = makePanel();
            const names = symbolNamesIn(panel);
            verify(names.length > 10);
            for (const name of names)
                verify(stage.hasDrawing(name), name);
        }
    }
}
