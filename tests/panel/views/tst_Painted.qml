import QtQuick
import QtTest
import Kelvinbar.Panel as Panel

Item {
    id: board
    width: 462
    height: 690

    Rectangle {
        id: paper
        width: 300
        height: 80
        color: "black"
    }
    Component {
        id: digitsComponent

        Panel.DigitsText {
            font: Panel.PanelStyle.roundedFont(11.5, Font.Black)
        }
    }
    Component {
        id: plateComponent

        Panel.Plate {}
    }
    Component {
        id: symbolComponent

        Panel.Symbol {}
    }
    Component {
        id: spyComponent

        SignalSpy {}
    }

    ViewTest {
        name: "Painted"

        /// The number of drawn pixels in a part of the paper.
        function inkIn(x, y, width, height) {
            const picture = grabImage(paper);
            let dots = 0;
            for (let column = x; column < x + width; ++column) {
                for (let row = y; row < y + height; ++row)
                    dots += picture.red(column, row) + picture.green(column, row) + picture.blue(column, row) > 60;
            }
            return dots;
        }

        function put(component, properties) {
            const item = createTemporaryObject(component, paper, properties);
            verify(item !== null);
            stage.layOut(item);
            return item;
        }

        function changesOf(item, property) {
            const spy = createTemporaryObject(spyComponent, board, {target: item, signalName: property + "Changed"});
            verify(spy.valid);
            return spy;
        }

        // Text with digits

        function test_textsWithOtherDigitsAreAsWide_data() {
            return [{tag: "Black", weight: Font.Black}, {tag: "Bold", weight: Font.Bold}, {tag: "Normal", weight: Font.Normal}];
        }

        function test_textsWithOtherDigitsAreAsWide(data) {
            const text = put(digitsComponent, {text: "111.1° rpm", font: Panel.PanelStyle.font(11.5, data.weight)});
            const width = text.implicitWidth;
            verify(width > 20);
            for (const digits of ["888.8", "000.0", "123.4", "777.9"]) {
                text.text = digits + "° rpm";
                compare(text.implicitWidth, width);
            }
            text.text = "1111.1° rpm";
            verify(text.implicitWidth > width);
        }

        function test_aTextIsAsWideAsItsDigitsAndMore() {
            const one = put(digitsComponent, {text: "1"}).implicitWidth;
            const four = put(digitsComponent, {text: "1234"}).implicitWidth;
            verify(Math.abs(four - 4 * one) <= 4);
            compare(put(digitsComponent, {text: ""}).implicitWidth, 0);
        }

        function test_aTextWithoutRoomEndsInDotsInsideItsItem() {
            const text = put(digitsComponent, {text: "88888888888888888888", x: 20, y: 20});
            verify(text.implicitWidth > 100);
            verify(inkIn(90, 0, 200, 80) > 0);
            const upperHalf = text.height / 2;
            verify(inkIn(72, 20, 7, upperHalf) > 0);
            text.width = 60;
            stage.layOut(text);
            verify(inkIn(20, 20, 40, upperHalf) > 0);
            compare(inkIn(72, 20, 7, upperHalf), 0); // the dots of the ellipsis are on the baseline
            verify(inkIn(60, 20, 20, text.height) > inkIn(60, 20, 20, upperHalf));
            compare(inkIn(82, 0, 218, 80), 0);
            compare(inkIn(0, 0, 19, 80), 0);
        }

        function test_aCentredTextIsInTheMiddleOfItsItem() {
            const text = put(digitsComponent, {text: "8", x: 0, y: 20, width: 200});
            verify(inkIn(0, 20, 40, 20) > 0);
            text.isCentered = true;
            stage.layOut(text);
            compare(inkIn(0, 20, 80, 20), 0);
            verify(inkIn(90, 20, 20, 20) > 0);
            compare(inkIn(120, 20, 80, 20), 0);
        }

        function test_aTextIsDrawnInItsColour() {
            put(digitsComponent, {text: "888", color: "#ff0000", x: 20, y: 20});
            const picture = grabImage(paper);
            let reds = 0;
            for (let x = 20; x < 60; ++x) {
                for (let y = 20; y < 40; ++y) {
                    reds += picture.red(x, y) > 200;
                    verify(picture.green(x, y) < 10);
                }
            }
            verify(reds > 0);
        }

        function test_aChangeOfATextIsToldOnce_data() {
            return [
                {tag: "text", property: "text", value: "2"}, {tag: "color", property: "color", value: "#123456"},
                {tag: "isCentered", property: "isCentered", value: true},
                {tag: "font", property: "font", value: Panel.PanelStyle.font(20, Font.Normal)}
            ];
        }

        function test_aChangeOfATextIsToldOnce(data) {
            const text = put(digitsComponent, {text: "1"});
            const spy = changesOf(text, data.property);
            text[data.property] = data.value;
            compare(spy.count, 1);
            text[data.property] = data.value;
            compare(spy.count, 1);
        }

        // Plates

        function test_aChangeOfAPlateIsToldOnce_data() {
            return [
                {tag: "radius", property: "radius", value: 4}, {tag: "stroke", property: "stroke", value: "#123456"},
                {tag: "isVertical", property: "isVertical", value: true},
                {tag: "colors", property: "colors", value: [Qt.rgba(1, 0, 0, 1), Qt.rgba(0, 0, 1, 1)]}
            ];
        }

        function test_aChangeOfAPlateIsToldOnce(data) {
            const plate = put(plateComponent, {width: 40, height: 40});
            const spy = changesOf(plate, data.property);
            plate[data.property] = data.value;
            compare(spy.count, 1);
            plate[data.property] = data.value;
            compare(spy.count, 1);
        }

        function putPlate(colors, isVertical) {
            const plate = put(plateComponent, {width: 80, height: 80, isVertical: isVertical});
            plate.colors = colors; // initial properties cannot be lists of colours (Qt 6.4)
            stage.layOut(plate);
            return plate;
        }

        function test_aPlateIsDrawnFromTheTopLeftToTheBottomRight() {
            putPlate(["#ff0000", "#0000ff"], false);
            const picture = grabImage(paper);
            verify(picture.red(4, 4) > 220 && picture.blue(4, 4) < 40);
            verify(picture.red(75, 75) < 40 && picture.blue(75, 75) > 220);
            fuzzyCompare(picture.red(75, 4), 128, 20);
            fuzzyCompare(picture.red(4, 75), 128, 20);
        }

        function test_aVerticalPlateIsDrawnFromTopToBottom() {
            putPlate(["#ff0000", "#0000ff"], true);
            const picture = grabImage(paper);
            verify(picture.red(4, 2) > 220 && picture.red(75, 2) > 220);
            verify(picture.blue(4, 77) > 220 && picture.blue(75, 77) > 220);
        }

        function test_cornersAreRound() {
            const plate = putPlate(["#ffffff"], false);
            verify(inkIn(0, 0, 2, 2) === 4);
            plate.radius = 20;
            stage.layOut(plate);
            compare(inkIn(0, 0, 3, 3), 0);
            compare(inkIn(77, 77, 3, 3), 0);
            verify(inkIn(40, 0, 2, 2) === 4);
        }

        function test_aPlateWithoutColoursIsItsLineAlone() {
            put(plateComponent, {width: 80, height: 80, stroke: "#ffffff"});
            verify(inkIn(10, 0, 60, 1) === 60);
            compare(inkIn(2, 2, 76, 76), 0);
        }

        // Symbols

        function test_aChangeOfASymbolIsToldOnce_data() {
            return [
                {tag: "name", property: "name", value: "plus"}, {tag: "color", property: "color", value: "#123456"},
                {tag: "size", property: "size", value: 20}
            ];
        }

        function test_aChangeOfASymbolIsToldOnce(data) {
            const symbol = put(symbolComponent, {name: "minus", size: 12});
            const spy = changesOf(symbol, data.property);
            symbol[data.property] = data.value;
            compare(spy.count, 1);
            symbol[data.property] = data.value;
            compare(spy.count, 1);
        }

        function test_aSymbolIsAsLargeAsItsSize() {
            const symbol = put(symbolComponent, {name: "plus", size: 24});
            compare(symbol.width, 24);
            compare(symbol.height, 24);
            symbol.size = 40;
            compare(symbol.width, 40);
            verify(inkIn(0, 0, 40, 40) > 0);
            compare(inkIn(41, 0, 200, 80), 0);
        }

        function test_anotherNameIsAnotherDrawing() {
            const symbol = put(symbolComponent, {name: "minus", size: 40});
            const minus = inkIn(0, 0, 40, 40);
            symbol.name = "plus";
            verify(inkIn(0, 0, 40, 40) > minus);
            symbol.name = "no such symbol";
            compare(inkIn(0, 0, 40, 40), 0);
        }

        // Style

        function test_pointsAreThoseOfTheStandardTextSize() {
            fuzzyCompare(Panel.PanelStyle.font(12, Font.Bold).pointSize, 9, 0.01);
            compare(Panel.PanelStyle.font(12, Font.Bold).weight, Font.Bold);
            compare(Panel.PanelStyle.roundedFont(12, Font.Black).weight, Font.Black);
            compare(Panel.PanelStyle.scaled(23), 23);
        }

        function test_inksHaveTheirOpacity() {
            compareColor(Panel.PanelStyle.white(0.34), Qt.rgba(1, 1, 1, 0.34));
            compareColor(Panel.PanelStyle.black(0.2), Qt.rgba(0, 0, 0, 0.2));
            compareColor(Panel.PanelStyle.tinted("#64d2ff", 0.5), Qt.rgba(100 / 255, 210 / 255, 1, 0.5));
        }

        function test_theInkOfAnAccentIsLightWithABreathOfIt() {
            const ink = Panel.PanelStyle.accentText("#ff0000");
            verify(ink.r > 0.99 && ink.g > 0.5 && ink.g < 1);
            compareColor(Panel.PanelStyle.accentText("#ffffff"), "#ffffff");
            verify(Panel.PanelStyle.accentSymbol("#ff0000").g < ink.g);
        }
    }
}
