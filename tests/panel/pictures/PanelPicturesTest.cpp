#include "tests/panel/pictures/PanelPictures.h"

#include "panel/Plate.h"
#include "panel/RoundedFont.h"
#include "tests/panel/pictures/PanelStage.h"
#include "tests/panel/pictures/PictureComparison.h"

#include <QDir>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QPainter>
#include <QQuickItem>
#include <QStringList>
#include <QVersionNumber>
#include <algorithm>
#include <functional>
#include <string>

#include <gtest/gtest.h>

namespace kelvinbar::panel_pictures_test {

namespace {

/// The name of a picture, followed by the number of pixels a point if that is not 1.
QString fileName(const char* name) {
    const double ratio = qGuiApp->devicePixelRatio();
    return ratio == 1 ? QString("%1.png").arg(name) : QString("%1@%2x.png").arg(name).arg(ratio);
}

/// Versions of Qt lay out and draw text in different ways. Those of the newest one that is not newer than
/// this.
QString referenceFolder() {
    const QVersionNumber running = QVersionNumber::fromString(qVersion());
    QVersionNumber newest;
    const QStringList folders = QDir(KELVINBAR_FIXTURES "/panel").entryList({"qt-*"}, QDir::Dirs);
    for (const QString& folder : folders) {
        const QVersionNumber version = QVersionNumber::fromString(folder.mid(3));
        if (version <= running) newest = std::max(newest, version);
    }
    return QString(KELVINBAR_FIXTURES "/panel/qt-%1/").arg(newest.toString());
}

QString referenceFile(const char* name) {
    static const QString folder = referenceFolder();
    return folder + fileName(name);
}

/// The drawn picture, for finding out why a test fails.
void keepArtefact(const QImage& picture, const char* name) {
    QDir().mkpath(KELVINBAR_ARTEFACTS);
    picture.save(KELVINBAR_ARTEFACTS "/panel-" + fileName(name));
}

class PanelPictures : public testing::TestWithParam<PanelPicture> {};

TEST_P(PanelPictures, LooksLikeItsReference) {
    const auto& [name, draw] = GetParam();
    const QImage picture = draw();
    keepArtefact(picture, name);
    const QImage reference(referenceFile(name));
    ASSERT_FALSE(reference.isNull());
    EXPECT_EQ(picture.size(), reference.size());
    EXPECT_LE(differingShare(picture, reference), tolerance);
    EXPECT_LE(differingSurface(reference, picture), surfaceTolerance);
}

INSTANTIATE_TEST_SUITE_P(States, PanelPictures,
                         testing::ValuesIn(panelPictures().begin(), panelPictures().end()),
                         [](const auto& state) {
                             std::string name = state.param.name;
                             std::erase(name, '-');
                             return name;
                         });

TEST(RoundedFont, IsTheOneInTheFileAsLongAsItLives) {
    {
        const RoundedFont font(QString::fromUtf8(roundFontFile));
        EXPECT_EQ(font.family(), "Quicksand");
        EXPECT_TRUE(QFontDatabase::families().contains("Quicksand"));
    }
    EXPECT_FALSE(QFontDatabase::families().contains("Quicksand"));
}

QImage reference() { return QImage(referenceFile("fixed")).convertToFormat(QImage::Format_RGB32); }

/// The position of a card in the reference.
constexpr QRect card(12, 94, 438, 446);

TEST(PictureComparison, ACardThatMovedByAPixelIsNoticed) {
    for (const QPoint shift : {QPoint(1, 0), QPoint(0, 1), QPoint(-1, 0), QPoint(0, -1)}) {
        const QImage original = reference();
        QImage moved = original;
        QPainter(&moved).drawImage(card.topLeft() + shift, original, card);
        EXPECT_GT(differingShare(original, moved), tolerance) << shift.x() << ", " << shift.y();
    }
}

/// The surface of the item with that accessible name.
Plate& plateOf(PanelStage& stage, const QString& name) {
    return *stage.item(name)->findChild<Plate*>(QString(), Qt::FindDirectChildrenOnly);
}

/// What differs from the reference if the panel is drawn after `change`.
double surfaceDifferingAfter(const std::function<void(PanelStage&)>& change) {
    return differingSurface(reference(), fixedPanelAfter(change));
}

TEST(PictureComparison, ARowWithoutItsGradientIsNoticed) {
    EXPECT_GT(surfaceDifferingAfter([](PanelStage& stage) { plateOf(stage, "Core 1").setColors({}); }),
              surfaceTolerance);
}

TEST(PictureComparison, ARowWithoutItsBorderIsNoticed) {
    EXPECT_GT(
        surfaceDifferingAfter([](PanelStage& stage) { plateOf(stage, "Core 1").setStroke(Qt::transparent); }),
        surfaceTolerance);
}

TEST(PictureComparison, ACardWithoutItsBorderIsNoticed) {
    EXPECT_GT(
        surfaceDifferingAfter([](PanelStage& stage) { plateOf(stage, "CPU").setStroke(Qt::transparent); }),
        surfaceTolerance);
}

TEST(PictureComparison, ACardWithoutItsGradientIsNoticed) {
    EXPECT_GT(surfaceDifferingAfter([](PanelStage& stage) { plateOf(stage, "CPU").setColors({}); }),
              surfaceTolerance);
}

TEST(PictureComparison, APictureIsLikeItself) {
    EXPECT_EQ(differingShare(reference(), reference()), 0);
    EXPECT_EQ(differingSurface(reference(), reference()), 0);
}

TEST(PictureComparison, AFewEdgesOfLettersMayDiffer) {
    QImage changed = reference();
    for (int x = 0; x < 100; ++x) changed.setPixelColor(30 + x, 100, Qt::white);
    EXPECT_GT(differingShare(reference(), changed), 0);
    EXPECT_LE(differingShare(reference(), changed), tolerance);
}

TEST(PictureComparison, ADifferentSizeDiffers) {
    EXPECT_EQ(differingShare(reference(), reference().copy(0, 0, 100, 100)), 1);
    EXPECT_EQ(differingShare({}, {}), 1);
    EXPECT_EQ(differingSurface(reference(), reference().copy(0, 0, 100, 100)), 1);
    EXPECT_EQ(differingSurface({}, {}), 1);
}

} // namespace
} // namespace kelvinbar::panel_pictures_test
