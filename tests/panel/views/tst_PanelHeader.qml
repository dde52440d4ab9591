import QtQuick
import Kelvinbar.Panel as Panel

Item {
    id: board
    width: 462
    height: 690

    Component {
        id: aboutComponent

        Panel.AboutPopoverView {
            parent: board
            reducedMotion: true
        }
    }

    Component {
        id: iconComponent

        Panel.AnimatedHeaderIcon {}
    }

    ViewTest {
        name: "PanelHeader"

        function headerOf(panel) {
            return firstIn(panel, item => item instanceof Panel.PanelHeader, "header");
        }

        function openAbout(panel) {
            mouseClick(buttonIn(panel, "About"));
            const about = aboutOf(panel);
            tryVerify(() => about.opened);
            return about;
        }

        /// About with these values of the build.
        function makeAbout(values) {
            const controls = stage.makeControls(values.author ?? "Ada Example", values.contact ?? "", values.donationPage ?? "");
            const about = createTemporaryObject(aboutComponent, board, {controls: controls});
            about.showAbout = true;
            tryVerify(() => about.opened);
            stage.layOut(about.contentItem);
            return about;
        }

        // Header

        function test_theHeaderHasIconTitleAndAboutFromLeftToRight() {
            const header = headerOf(makePanel());
            const icon = firstIn(header, item => item instanceof Panel.AnimatedHeaderIcon, "icon");
            const title = textIn(header, "Kelvinbar");
            const about = buttonIn(header, "About");
            verify(placeOf(icon).x + icon.width <= placeOf(title).x);
            verify(placeOf(title).x + title.width <= placeOf(about).x);
            verify(placeOf(about).x + about.width > 462 - 30);
            fuzzyCompare(title.font.pointSize * pointsToPixels, 18, 0.01);
        }

        function test_theIconIsThePicture() {
            const header = headerOf(makePanel());
            const picture = firstIn(header, item => item instanceof Panel.Artwork, "picture");
            compare(picture.name, "AboutIcon");
            verify(picture.width > 0 && picture.width === picture.height);
        }

        function test_aboutIsAnExclamationMarkWithAToolTip() {
            const about = buttonIn(headerOf(makePanel()), "About");
            compare(symbolNamesIn(about), ["exclamationmark.circle"]);
            compare(symbolsIn(about)[0].size, 15);
            compare(about.toolTip, "About");
            verify(stage.hasDrawing("exclamationmark.circle"));
        }

        function test_withoutADonationPageThereIsNoDonationButton() {
            compare(stage.content.controls.donationPage, "");
            const header = headerOf(makePanel());
            compare(buttonsIn(header).length, 1);
            verify(!hasText(header, "Donate"));
        }

        // The icon's glow

        function test_theGlowBrightensOnceWhenThePanelOpens() {
            const icon = make(iconComponent, {isAnimated: true});
            const glow = plateIn(icon);
            compare(glow.opacity, 1);
            icon.greet();
            tryVerify(() => glow.opacity < 0.9, 100);
            let former = glow.opacity;
            tryVerify(() => {
                const isDimmer = glow.opacity < former;
                former = glow.opacity;
                verify(!isDimmer, "it brightens all the time");
                return glow.opacity === 1;
            });
            wait(100);
            compare(glow.opacity, 1);
        }

        function test_theGlowStandsStillWhereLessMotionIsWanted() {
            const icon = make(iconComponent, {isAnimated: false});
            icon.greet();
            for (let count = 0; count < 5; ++count) {
                wait(20);
                compare(plateIn(icon).opacity, 1);
            }
        }

        function test_aPanelThatOpensGreetsAndClosesAbout() {
            const panel = makePanel();
            const about = openAbout(panel);
            stage.content.opened();
            tryVerify(() => !about.visible);
            verify(!about.showAbout);
        }

        // About opens and closes

        function test_aboutIsClosedAtFirst() {
            const about = aboutOf(makePanel());
            verify(!about.visible);
            verify(!about.showAbout);
        }

        function test_theButtonOpensAboutAndClosesIt() {
            const panel = makePanel();
            const about = openAbout(panel);
            verify(about.showAbout);
            mouseClick(buttonIn(panel, "About"));
            tryVerify(() => !about.visible);
            verify(!about.showAbout);
            mouseClick(buttonIn(panel, "About"));
            tryVerify(() => about.opened);
        }

        function test_aRequestOpensAboutAndLeavesItOpen() {
            const panel = makePanel();
            const about = aboutOf(panel);
            stage.content.aboutRequested();
            tryVerify(() => about.opened);
            stage.content.aboutRequested();
            settle(panel);
            verify(about.opened);
        }

        function test_escapeClosesAboutAlone() {
            const panel = makePanel();
            const about = openAbout(panel);
            press(Qt.Key_Escape);
            tryVerify(() => !about.visible);
            verify(!about.showAbout);
            compare(stage.closings, 0);
        }

        function test_escapeClosesThePanelOnceAboutIsClosed() {
            const panel = makePanel();
            const about = openAbout(panel);
            press(Qt.Key_Escape);
            tryVerify(() => !about.visible);
            press(Qt.Key_Escape);
            compare(stage.closings, 1);
        }

        function test_aPressOutsideClosesAbout() {
            const panel = makePanel();
            const about = openAbout(panel);
            mouseClick(panel, 20, 400);
            tryVerify(() => !about.visible);
            verify(!about.showAbout);
        }

        function test_aPressInsideLeavesAboutOpen() {
            const panel = makePanel();
            const about = openAbout(panel);
            mouseClick(about.contentItem, 5, 5);
            wait(50);
            verify(about.visible);
            verify(about.showAbout);
        }

        function test_theKeyboardOpensAboutAndComesBackToItsButton() {
            const panel = makePanel();
            const button = buttonIn(panel, "About");
            button.forceActiveFocus(Qt.TabFocusReason);
            press(Qt.Key_Return);
            const about = aboutOf(panel);
            tryVerify(() => about.opened);
            press(Qt.Key_Escape);
            tryVerify(() => !about.visible);
            tryVerify(() => button.activeFocus, 500);
        }

        function test_aboutIsAttachedToItsButtonAndInsideTheWindow() {
            for (const width of [462, 420]) {
                const panel = makePanel(width, 560);
                const about = openAbout(panel);
                const place = placeOf(about.background);
                verify(isInside(place, placeOf(board)), width);
                const button = placeOf(buttonIn(panel, "About"));
                verify(place.y >= button.y + button.height);
                verify(place.y < button.y + button.height + 20);
                panel.destroy();
                wait(0);
            }
        }

        // Content of About

        function test_aboutTellsNameAndPurposeAndAuthor() {
            const about = makeAbout({author: "Ada Example"});
            const texts = textsIn(about.contentItem).map(text => text.text);
            compare(texts.slice(0, 2), [
                "Kelvinbar",
                "Menu bar sensor reader for Hackintosh, AMD SMCAMDProcessor, Intel Macs and Apple Silicon Macs."
            ]);
            compare(texts.slice(2 + programLines), ["Ada Example"]);
            const picture = firstIn(about.contentItem, item => item instanceof Panel.Artwork, "picture");
            compare(picture.name, "AboutIcon");
            compare(picture.width, 72);
        }

        readonly property int programLines: 3

        function test_aboutTellsVersionAndLicenceThePreferencesAndHowToSeeTheLog() {
            const about = makeAbout({});
            compare(textsIn(about.contentItem).slice(2, 2 + programLines).map(text => text.text), [
                "Version 1.2.3, MIT License",
                "Preferences: /home/ada/.config/kelvinbar/kelvinbar.conf",
                "Log: quit, then run in a terminal\n/opt/a/very/long/place/of/programs/kelvinbar --verbose"
            ]);
        }

        function test_theTextsOfAboutAreWholeAndInsideIt() {
            const about = makeAbout({contact: "ada.lovelace@example.org", donationPage: "https://example.org/donate"});
            const texts = textsIn(about.contentItem);
            verify(texts.length >= 5 + programLines);
            for (const text of texts) {
                verify(!text.truncated);
                verify(isInside(placeOf(text), placeOf(about.background)), text.text);
            }
        }

        function test_aLongContactStaysInsideAbout() {
            const about = makeAbout({contact: "the.author.with.a.very.long.name.indeed@a.very.long.host.name.example.org"});
            for (const text of textsIn(about.contentItem))
                verify(isInside(placeOf(text), placeOf(about.background)), text.text);
        }

        function test_valuesThatTheBuildDoesNotHaveAreNotShown() {
            const about = makeAbout({author: "", contact: "", donationPage: ""});
            compare(buttonsIn(about.contentItem).length, 0);
            compare(textsIn(about.contentItem).length, 2 + programLines);
        }

        function test_theContactIsAButtonThatWritesToTheAuthor() {
            const about = makeAbout({contact: "ada@example.org"});
            compare(buttonsIn(about.contentItem).length, 1);
            mouseClick(buttonIn(about.contentItem, "ada@example.org"));
            compare(stage.openedAddresses, ["mailto:ada@example.org"]);
        }

        function test_theDonationButtonOpensThePage() {
            const about = makeAbout({donationPage: "https://example.org/donate"});
            compare(buttonsIn(about.contentItem).length, 1);
            mouseClick(buttonIn(about.contentItem, "Donate"));
            compare(stage.openedAddresses, ["https://example.org/donate"]);
        }

        function test_theButtonsOfAboutHaveSymbols() {
            const about = makeAbout({contact: "ada@example.org", donationPage: "https://example.org/donate"});
            const names = symbolNamesIn(about.contentItem);
            compare(names.length, 2);
            for (const name of names)
                verify(stage.hasDrawing(name), name);
        }

        function test_theKeyboardGoesRoundTheButtonsOfAbout() {
            const about = makeAbout({contact: "ada@example.org", donationPage: "https://example.org/donate"});
            press(Qt.Key_Tab);
            verify(buttonIn(about.contentItem, "ada@example.org").activeFocus);
            press(Qt.Key_Return);
            compare(stage.openedAddresses, ["mailto:ada@example.org"]);
            press(Qt.Key_Tab);
            verify(buttonIn(about.contentItem, "Donate").activeFocus);
            press(Qt.Key_Space);
            compare(stage.openedAddresses, ["mailto:ada@example.org", "https://example.org/donate"]);
        }
    }
}
