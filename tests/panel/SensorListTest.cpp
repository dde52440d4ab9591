#include "panel/SensorList.h"

#include <QAbstractItemModelTester>
#include <QColor>
#include <QSignalSpy>
#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::sensor_list_test {

namespace {

using Texts = std::vector<std::string>;
using Readings = std::vector<SMCReading>;

const SensorListMetrics metrics(1);

double pitch() { return metrics.rowHeight + metrics.rowGap; }

/// Numbers as names, so that names sort like the keys.
SMCReading numberedReading(SMCCategory category, int number, double value = 40) {
    std::string digits = std::to_string(number);
    digits.insert(0, 4 - std::min<std::size_t>(4, digits.size()), '0');
    const bool isThermal = category == SMCCategory::thermal;
    return {.key = (isThermal ? "T" : "C") + digits,
            .name = "Probe " + digits,
            .category = category,
            .type = "sp78",
            .value = std::to_string(static_cast<int>(value)),
            .numericValue = value,
            .unit = "°C",
            .raw = "2800",
            .status = "OK"};
}

/// `count` readings of the first card.
Readings cpuReadings(int count, int first = 0) {
    Readings readings;
    for (int number = first; number < first + count; ++number) {
        readings.push_back(numberedReading(SMCCategory::cpu, number));
    }
    return readings;
}

/// `count` readings of the last card.
Readings thermalReadings(int count) {
    Readings readings;
    for (int number = 0; number < count; ++number) {
        readings.push_back(numberedReading(SMCCategory::thermal, number));
    }
    return readings;
}

Readings operator+(Readings left, const Readings& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

Readings without(Readings readings, const std::vector<std::string>& keys) {
    std::erase_if(readings, [&](const SMCReading& reading) {
        return std::ranges::find(keys, reading.key) != keys.end();
    });
    return readings;
}

SMCReading& at(Readings& readings, std::string_view key) {
    return *std::ranges::find(readings, key, &SMCReading::key);
}

/// A view of the list with a fixed height that, like real views, never scrolls beyond the ends.
class View {
  public:
    std::vector<double> requestedTops;

    View(SensorList& list, double height) : list_(list), height_(height) {
        QObject::connect(&list, &SensorList::viewportTopRequested, &context_, [this](double top) {
            requestedTops.push_back(top);
            scrollTo(top);
        });
        QObject::connect(&list, &SensorList::contentHeightChanged, &context_, [this] { scrollTo(top_); });
        list_.setViewport(top_, height_);
    }

    void scrollTo(double top) {
        const double next = std::clamp(top, 0.0, std::max(0.0, list_.contentHeight() - height_));
        if (std::exchange(top_, next) != next) list_.setViewport(top_, height_);
    }

    void resize(double height) {
        height_ = height;
        list_.setViewport(top_, height_);
    }

    [[nodiscard]] double top() const { return top_; }

    [[nodiscard]] double bottom() const { return top_ + height_; }

    [[nodiscard]] double height() const { return height_; }

  private:
    SensorList& list_;
    double top_ = 0;
    double height_;
    QObject context_;
};

/// Records the signals of a model.
class Recorder {
  public:
    Recorder(QAbstractItemModel& model, std::string name, Texts& journal)
        : model_(model), name_(std::move(name)), journal_(journal) {
        QObject::connect(&model, &QAbstractItemModel::rowsInserted, &context_,
                         [this](const QModelIndex&, int first, int last) { add("insert", first, last); });
        QObject::connect(&model, &QAbstractItemModel::rowsRemoved, &context_,
                         [this](const QModelIndex&, int first, int last) { add("remove", first, last); });
        QObject::connect(&model, &QAbstractItemModel::rowsMoved, &context_,
                         [this](const QModelIndex&, int first, int last) { add("move", first, last); });
        QObject::connect(&model, &QAbstractItemModel::dataChanged, &context_,
                         [this](const QModelIndex& first, const QModelIndex& last, const QList<int>& roles) {
                             add("change", first.row(), last.row());
                             for (const int role : roles) {
                                 journal_.back() += " " + model_.roleNames().value(role).toStdString();
                             }
                         });
        QObject::connect(&model, &QAbstractItemModel::modelReset, &context_, [this] { add("reset", 0, 0); });
        QObject::connect(&model, &QAbstractItemModel::layoutChanged, &context_,
                         [this] { add("layout", 0, 0); });
    }

  private:
    void add(const std::string& what, int first, int last) {
        journal_.push_back(name_ + ": " + what + " " + std::to_string(first));
        if (last != first) journal_.back() += "-" + std::to_string(last);
    }

    QAbstractItemModel& model_;
    std::string name_;
    Texts& journal_;
    QObject context_;
};

struct List : testing::Test {
    SensorList list{metrics};
    QAbstractItemModelTester tester{list.cards(), QAbstractItemModelTester::FailureReportingMode::Fatal};
    Texts journal; ///< of the models that are there, from record() on

    void show(const Readings& readings, const Texts& pins = {}, const KeySet& hidden = {}) {
        list.update(readings, hidden, pins);
    }

    [[nodiscard]] QVariant card(int row, SensorCardsModel::Role role) {
        return list.cards()->index(row, 0).data(role);
    }

    [[nodiscard]] QAbstractItemModel& rows(int cardRow) {
        return *qvariant_cast<QAbstractItemModel*>(card(cardRow, SensorCardsModel::RowsRole));
    }

    [[nodiscard]] QVariant row(int cardRow, int rowOfCard, SensorRowsModel::Role role) {
        return rows(cardRow).index(rowOfCard, 0).data(role);
    }

    /// The keys that are in the models, a card's rows after its section: "[cpu]", "C0000", …
    [[nodiscard]] Texts built() {
        Texts texts;
        for (int cardRow = 0; cardRow < list.cards()->rowCount(); ++cardRow) {
            texts.push_back("[" + card(cardRow, SensorCardsModel::IdRole).toString().toStdString() + "]");
            for (int number = 0; number < rows(cardRow).rowCount(); ++number) {
                texts.push_back(row(cardRow, number, SensorRowsModel::KeyRole).toString().toStdString());
            }
        }
        return texts;
    }

    /// The position of a row in the list; nothing when it is not in the models.
    [[nodiscard]] std::optional<double> topOf(std::string_view key) {
        for (int cardRow = 0; cardRow < list.cards()->rowCount(); ++cardRow) {
            for (int number = 0; number < rows(cardRow).rowCount(); ++number) {
                if (row(cardRow, number, SensorRowsModel::KeyRole).toString().toStdString() != key) continue;
                return card(cardRow, SensorCardsModel::TopRole).toDouble() +
                       row(cardRow, number, SensorRowsModel::TopRole).toDouble();
            }
        }
        return std::nullopt;
    }

    /// Records the signals of the list and of its present models.
    void record() {
        journal.clear();
        recorders_.clear();
        recorders_.push_back(std::make_unique<Recorder>(*list.cards(), "cards", journal));
        for (int cardRow = 0; cardRow < list.cards()->rowCount(); ++cardRow) {
            recorders_.push_back(std::make_unique<Recorder>(
                rows(cardRow), card(cardRow, SensorCardsModel::IdRole).toString().toStdString(), journal));
        }
        if (isRecordingList_) return;
        isRecordingList_ = true;
        QObject::connect(&list, &SensorList::contentHeightChanged,
                         [this] { journal.emplace_back("height"); });
        QObject::connect(&list, &SensorList::currentKeyChanged,
                         [this] { journal.push_back("current " + list.currentKey().toStdString()); });
        QObject::connect(&list, &SensorList::viewportTopRequested,
                         [this](double /*top*/) { journal.emplace_back("scroll"); });
    }

  private:
    std::vector<std::unique_ptr<Recorder>> recorders_;
    bool isRecordingList_ = false;
};

struct ListContent : List {};

struct ListOnScreen : List {};

struct ListRefresh : List {};

struct ListInPlace : List {};

struct ListKeyboard : List {
    [[nodiscard]] std::string current() const { return list.currentKey().toStdString(); }

    /// The key after each step.
    template <typename Step>
    Texts currentAfter(int count, Step step) {
        Texts keys;
        for (int number = 0; number < count; ++number) {
            step();
            keys.push_back(current());
        }
        return keys;
    }
};

/// The sections and rows that are at least partly between `top` and `bottom`, for a list of two cards with so
/// many rows.
Texts expectedOnScreen(const std::vector<std::pair<std::string, Texts>>& cards, double top, double bottom) {
    Texts texts;
    double cardTop = metrics.margin;
    for (const auto& [section, keys] : cards) {
        const double height =
            metrics.cardHeader + static_cast<double>(keys.size()) * pitch() + metrics.cardFooter;
        if (cardTop < bottom && cardTop + height > top) {
            texts.push_back("[" + section + "]");
            for (std::size_t number = 0; number < keys.size(); ++number) {
                const double rowTop = cardTop + metrics.cardHeader + static_cast<double>(number) * pitch();
                if (rowTop < bottom && rowTop + metrics.rowHeight > top) texts.push_back(keys[number]);
            }
        }
        cardTop += height + metrics.spacing;
    }
    return texts;
}

Texts keysOf(const Readings& readings) {
    Texts keys;
    for (const SMCReading& reading : readings) keys.push_back(reading.key);
    return keys;
}

/// The top of a row of the first card.
double firstCardRowTop(int number) { return metrics.margin + metrics.cardHeader + number * pitch(); }

double heightOfCard(int rowCount) { return metrics.cardHeader + rowCount * pitch() + metrics.cardFooter; }

// Content

TEST_F(ListContent, IsEmptyAtFirst) {
    EXPECT_EQ(list.cards()->rowCount(), 0);
    EXPECT_EQ(list.contentHeight(), 0);
    EXPECT_EQ(list.visibleReadingCount(), 0U);
    EXPECT_EQ(list.sectionCount(), 0U);
    EXPECT_EQ(list.currentKey(), "");
    EXPECT_EQ(list.reading("C0000"), nullptr);
}

TEST_F(ListContent, HasACardForEachSectionAndARowForEachReading) {
    list.setViewport(0, 1000);
    show(thermalReadings(2) + cpuReadings(3));
    EXPECT_EQ(built(), (Texts{"[cpu]", "C0000", "C0001", "C0002", "[thermal]", "T0000", "T0001"}));
    EXPECT_EQ(list.sectionCount(), 2U);
    EXPECT_EQ(list.visibleReadingCount(), 5U);
}

TEST_F(ListContent, ACardTellsItsSectionAndItsPlace) {
    list.setViewport(0, 1000);
    show(cpuReadings(3) + thermalReadings(2));
    ASSERT_EQ(list.cards()->rowCount(), 2);
    EXPECT_EQ(card(1, SensorCardsModel::IdRole), "thermal");
    EXPECT_EQ(card(1, SensorCardsModel::TitleRole), "THERMAL ZONES");
    EXPECT_EQ(card(1, SensorCardsModel::SubtitleRole), "Board and misc thermal probes");
    EXPECT_EQ(card(1, SensorCardsModel::IconRole), "thermometer.medium");
    EXPECT_EQ(card(1, SensorCardsModel::CountRole), 2);
    EXPECT_EQ(card(0, SensorCardsModel::CountRole), 3);
    EXPECT_EQ(card(0, SensorCardsModel::TopRole), 12.0);
    EXPECT_EQ(card(0, SensorCardsModel::HeightRole), heightOfCard(3));
    EXPECT_EQ(card(1, SensorCardsModel::TopRole), 12 + heightOfCard(3) + 10);
    const PanelColor red = shade(Accent::red);
    EXPECT_EQ(card(1, SensorCardsModel::AccentRole).value<QColor>(), QColor(red.red, red.green, red.blue));
    EXPECT_NE(card(0, SensorCardsModel::AccentRole), card(1, SensorCardsModel::AccentRole));
}

TEST_F(ListContent, ACardTellsTheShapeOfItsLongestValue) {
    list.setViewport(0, 1000);
    Readings readings = cpuReadings(2);
    at(readings, "C0001").value = "112.5";
    show(readings);
    EXPECT_EQ(card(0, SensorCardsModel::ValueShapeRole), "000.0°");
    record();
    at(readings, "C0001").value = "113.4";
    show(readings);
    EXPECT_EQ(journal, (Texts{"cpu: change 1 valueText"})) << "the column stays";
    at(readings, "C0001").value = "9.5";
    list.updateInPlace(readings, {});
    EXPECT_EQ(card(0, SensorCardsModel::ValueShapeRole), "0.0°");
}

TEST_F(ListContent, ARowTellsWhatADoubleClickDoesInTheWordsOfItsMachine) {
    SensorList other(metrics, {.pinToolTip = "add", .unpinToolTip = "remove"});
    other.setViewport(0, 1000);
    other.update(cpuReadings(2), {}, {"C0001"});
    const QAbstractItemModel& rows = *other.cards()
                                          ->data(other.cards()->index(0, 0), SensorCardsModel::RowsRole)
                                          .value<SensorRowsModel*>();
    EXPECT_EQ(rows.data(rows.index(0, 0), SensorRowsModel::ToolTipRole), "add");
    EXPECT_EQ(rows.data(rows.index(1, 0), SensorRowsModel::ToolTipRole), "remove");
}

TEST_F(ListContent, KeepsItsRowsWhenItsMeasuresChange) {
    list.setViewport(0, 1000);
    show(cpuReadings(2));
    list.setMetrics(SensorListMetrics(2));
    EXPECT_EQ(list.rowHeight(), 84);
    EXPECT_EQ(built(), (Texts{"[cpu]", "C0000", "C0001"}));
    EXPECT_EQ(card(0, SensorCardsModel::HeightRole), list.contentHeight() - 24);
    EXPECT_GT(card(0, SensorCardsModel::HeightRole).toDouble(), heightOfCard(2));
}

TEST_F(ListContent, ARowTellsItsTextsAndItsPlaceInTheCard) {
    list.setViewport(0, 1000);
    Readings readings = cpuReadings(2);
    at(readings, "C0001").name = "Probe Temperature Total 7";
    show(readings);
    EXPECT_EQ(row(0, 1, SensorRowsModel::KeyRole), "C0001");
    EXPECT_EQ(row(0, 1, SensorRowsModel::NameRole), "Probe Temp  7");
    EXPECT_EQ(row(0, 1, SensorRowsModel::MetadataRole), "sp78 • °C");
    EXPECT_EQ(row(0, 1, SensorRowsModel::ValueRole), "40°");
    EXPECT_EQ(row(0, 1, SensorRowsModel::TopRole), metrics.cardHeader + pitch());
}

TEST_F(ListContent, ARowTellsItsNumberInTheWholeList) {
    list.setViewport(0, 1000);
    list.update(cpuReadings(2) + thermalReadings(2), {}, {});
    EXPECT_EQ(list.rowTotal(), 4);
    std::vector<int> numbers;
    for (int card = 0; card < 2; ++card) {
        const auto* const rows =
            list.cards()->index(card, 0).data(SensorCardsModel::RowsRole).value<SensorRowsModel*>();
        for (int row = 0; row < rows->rowCount(); ++row) {
            numbers.push_back(rows->index(row, 0).data(SensorRowsModel::NumberRole).toInt());
        }
    }
    EXPECT_EQ(numbers, (std::vector{1, 2, 3, 4}));
}

TEST_F(ListContent, ARowBelowOneThatIsGoneHasANewNumberAndTheTotalIsSignalled) {
    list.setViewport(0, 1000);
    list.update(cpuReadings(3), {}, {});
    const QSignalSpy changes(&list, &SensorList::rowTotalChanged);
    list.update(without(cpuReadings(3), {"C0000"}), {}, {});
    const auto* const rows =
        list.cards()->index(0, 0).data(SensorCardsModel::RowsRole).value<SensorRowsModel*>();
    EXPECT_EQ(rows->index(0, 0).data(SensorRowsModel::NumberRole).toInt(), 1);
    EXPECT_EQ(changes.count(), 1);
    list.update(without(cpuReadings(3), {"C0000"}), {}, {});
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(ListContent, APinnedRowLooksDifferent) {
    list.setViewport(0, 1000);
    show(cpuReadings(2), {"C0001", "gone"});
    EXPECT_EQ(row(0, 0, SensorRowsModel::SelectedRole), false);
    EXPECT_EQ(row(0, 1, SensorRowsModel::SelectedRole), true);
    EXPECT_EQ(row(0, 0, SensorRowsModel::ToolTipRole), "Double-click to add this key to the macOS menu bar");
    EXPECT_EQ(row(0, 1, SensorRowsModel::ToolTipRole), "Double-click to remove this key from the menu bar");
    EXPECT_EQ(row(0, 0, SensorRowsModel::BackgroundRole).toList().size(), 2);
    EXPECT_EQ(row(0, 1, SensorRowsModel::BackgroundRole).toList().size(), 3);
}

TEST_F(ListContent, HiddenReadingsAndSuchWithoutAValueHaveNoRow) {
    list.setViewport(0, 1000);
    Readings readings = cpuReadings(4);
    at(readings, "C0003").value = "n/a";
    show(readings, {}, {"C0001", "c0002"});
    EXPECT_EQ(built(), (Texts{"[cpu]", "C0000", "C0002"}));
    EXPECT_EQ(card(0, SensorCardsModel::CountRole), 2);
    EXPECT_EQ(list.visibleReadingCount(), 2U);
}

TEST_F(ListContent, ACardWithoutRowsIsGone) {
    list.setViewport(0, 1000);
    show(cpuReadings(1) + thermalReadings(1));
    show(cpuReadings(1) + thermalReadings(1), {}, {"C0000"});
    EXPECT_EQ(built(), (Texts{"[thermal]", "T0000"}));
    EXPECT_EQ(card(0, SensorCardsModel::TopRole), metrics.margin);
}

TEST_F(ListContent, AReadingOfNoSectionIsCountedButNotShown) {
    list.setViewport(0, 1000);
    Readings readings = cpuReadings(1);
    readings.front().category = SMCCategory::overview;
    show(readings);
    EXPECT_EQ(list.visibleReadingCount(), 1U);
    EXPECT_EQ(list.sectionCount(), 0U);
    EXPECT_EQ(list.contentHeight(), 0);
    EXPECT_EQ(list.reading("C0000"), nullptr);
}

TEST_F(ListContent, ItsHeightIsThatOfAllCardsAndIsSignalledWhenItChanges) {
    int changes = 0;
    QObject::connect(&list, &SensorList::contentHeightChanged, [&] { ++changes; });
    show(cpuReadings(3) + thermalReadings(2));
    EXPECT_EQ(list.contentHeight(), 12 + heightOfCard(3) + 10 + heightOfCard(2) + 12);
    EXPECT_EQ(changes, 1);
    show(cpuReadings(3, 50) + thermalReadings(2));
    EXPECT_EQ(changes, 1);
    show(cpuReadings(4));
    EXPECT_EQ(list.contentHeight(), 12 + heightOfCard(4) + 12);
    EXPECT_EQ(changes, 2);
    show({});
    EXPECT_EQ(list.contentHeight(), 0);
    EXPECT_EQ(changes, 3);
}

TEST_F(ListContent, GrowsWithTheText) {
    SensorList larger(SensorListMetrics(1.5));
    larger.update(cpuReadings(2), {}, {});
    EXPECT_EQ(larger.rowHeight(), 63);
    EXPECT_EQ(larger.contentHeight(), 12 + 72 + 2 * (63 + 8) + 6 + 12);
}

TEST_F(ListContent, GivesTheReadingOfAShownKeyOnly) {
    Readings readings = cpuReadings(3) + thermalReadings(1);
    at(readings, "T0000").value = "61";
    show(readings, {}, {"C0001"});
    ASSERT_NE(list.reading("T0000"), nullptr);
    EXPECT_EQ(*list.reading("T0000"), at(readings, "T0000"));
    ASSERT_NE(list.reading("C0002"), nullptr);
    EXPECT_EQ(*list.reading("C0002"), at(readings, "C0002"));
    EXPECT_EQ(list.reading("C0001"), nullptr);
    EXPECT_EQ(list.reading("C0009"), nullptr);
    EXPECT_EQ(list.reading("c0002"), nullptr);
    EXPECT_EQ(list.reading(""), nullptr);
}

TEST_F(ListContent, KeepsReadingsOfItsOwn) {
    {
        Readings readings = cpuReadings(2);
        show(readings);
        readings.front().value = "99";
    }
    ASSERT_NE(list.reading("C0000"), nullptr);
    EXPECT_EQ(list.reading("C0000")->value, "40");
}

// What is on the screen

TEST_F(ListOnScreen, NothingIsBuiltBeforeThereIsAView) {
    show(cpuReadings(3));
    EXPECT_EQ(built(), Texts{});
    list.setViewport(0, 100);
    EXPECT_EQ(built(), (Texts{"[cpu]", "C0000"}));
}

TEST_F(ListOnScreen, OnlyWhatIsAtLeastInPartOnItIsBuilt) {
    const Readings cpu = cpuReadings(60);
    const Readings thermal = thermalReadings(40);
    show(cpu + thermal);
    const double end = list.contentHeight();
    for (const double height : {1.0, 42.0, 47.0, 300.0, 690.0}) {
        for (double top = 0; top < end; top += 7.5) {
            list.setViewport(top, height);
            ASSERT_EQ(built(), expectedOnScreen({{"cpu", keysOf(cpu)}, {"thermal", keysOf(thermal)}}, top,
                                                top + height))
                << height << " points from " << top;
        }
    }
}

TEST_F(ListOnScreen, ARowThatOnlyTouchesItIsNotBuilt) {
    show(cpuReadings(10));
    list.setViewport(firstCardRowTop(0) + metrics.rowHeight, pitch());
    EXPECT_EQ(built(), (Texts{"[cpu]", "C0001"}));
    list.setViewport(firstCardRowTop(2), metrics.rowHeight);
    EXPECT_EQ(built(), (Texts{"[cpu]", "C0002"}));
    list.setViewport(firstCardRowTop(2) - 0.5, pitch() + 1);
    EXPECT_EQ(built(), (Texts{"[cpu]", "C0002", "C0003"}));
}

TEST_F(ListOnScreen, ScrollingByARowBuildsOneAndDropsOne) {
    show(cpuReadings(100));
    list.setViewport(firstCardRowTop(10), 5 * pitch());
    EXPECT_EQ(built(), (Texts{"[cpu]", "C0010", "C0011", "C0012", "C0013", "C0014"}));
    record();
    list.setViewport(firstCardRowTop(11), 5 * pitch());
    EXPECT_EQ(journal, (Texts{"cpu: remove 0", "cpu: insert 4"}));
    EXPECT_EQ(built(), (Texts{"[cpu]", "C0011", "C0012", "C0013", "C0014", "C0015"}));
    record();
    list.setViewport(firstCardRowTop(9), 5 * pitch());
    EXPECT_EQ(journal, (Texts{"cpu: remove 3-4", "cpu: insert 0-1"}));
}

TEST_F(ListOnScreen, ScrollingWithinARowSignalsNothing) {
    show(cpuReadings(100));
    list.setViewport(firstCardRowTop(10) + 3, 200);
    record();
    list.setViewport(firstCardRowTop(10) + 4, 200);
    list.setViewport(firstCardRowTop(10) + 4, 200);
    EXPECT_EQ(journal, Texts{});
}

TEST_F(ListOnScreen, AGrowingViewBuildsMore) {
    show(cpuReadings(3) + thermalReadings(3));
    list.setViewport(0, 100);
    record();
    list.setViewport(0, 1000);
    EXPECT_EQ(journal, (Texts{"cpu: insert 1-2", "cards: insert 1"}));
    EXPECT_EQ(built(), (Texts{"[cpu]", "C0000", "C0001", "C0002", "[thermal]", "T0000", "T0001", "T0002"}));
}

TEST_F(ListOnScreen, ACardThatComesBackIsUpToDate) {
    Readings readings = cpuReadings(100) + thermalReadings(2);
    show(readings);
    list.setViewport(list.contentHeight() - 100, 100);
    ASSERT_EQ(built(), (Texts{"[thermal]", "T0000", "T0001"}));
    list.setViewport(0, 100);
    ASSERT_EQ(built(), (Texts{"[cpu]", "C0000"}));
    at(readings, "T0001").value = "77";
    show(without(readings, {"T0000"}));
    list.setViewport(list.contentHeight() - 100, 100);
    ASSERT_EQ(built(), (Texts{"[thermal]", "T0001"}));
    EXPECT_EQ(row(0, 0, SensorRowsModel::ValueRole), "77°");
}

TEST_F(ListOnScreen, OfAThousandReadingsAFewAreBuilt) {
    show(cpuReadings(600) + thermalReadings(400));
    list.setViewport(0, 690);
    EXPECT_EQ(built().size(), 1U + 14U);
    list.setViewport(list.contentHeight() - 690, 690);
    EXPECT_EQ(built().size(), 1U + 15U);
    EXPECT_EQ(built().back(), "T0399");
    EXPECT_EQ(list.visibleReadingCount(), 1000U);
}

// A refresh

TEST_F(ListRefresh, OfUnchangedReadingsSignalsNothing) {
    const Readings readings = cpuReadings(40) + thermalReadings(40);
    list.setViewport(0, 2000);
    show(readings, {"C0003"}, {"T0004"});
    list.ensureCurrent();
    list.hover("C0002", true);
    record();
    show(readings, {"C0003"}, {"T0004"});
    EXPECT_EQ(journal, Texts{});
    list.setViewport(500, 690);
    record();
    show(readings, {"C0003"}, {"T0004"});
    EXPECT_EQ(journal, Texts{});
}

TEST_F(ListRefresh, WithTenMovedValuesSignalsTenRowsAndTheirValueOnly) {
    Readings readings = cpuReadings(30) + thermalReadings(270);
    list.setViewport(0, list.rowHeight() * 1000);
    show(readings);
    record();
    Texts expected;
    for (int number = 0; number < 300; number += 30) {
        readings[static_cast<std::size_t>(number)].value = "55";
        expected.push_back(number == 0 ? std::string("cpu: change 0 valueText")
                                       : "thermal: change " + std::to_string(number - 30) + " valueText");
    }
    show(readings);
    ASSERT_EQ(expected.size(), 10U);
    EXPECT_EQ(journal, expected);
    EXPECT_EQ(row(0, 0, SensorRowsModel::ValueRole), "55°");
}

TEST_F(ListRefresh, OfWhatIsNotShownOfAReadingSignalsNothing) {
    Readings readings = cpuReadings(3);
    list.setViewport(0, 1000);
    show(readings);
    record();
    for (SMCReading& reading : readings) {
        reading.numericValue = 40.01;
        reading.raw = "2801";
        reading.status = "Fine";
    }
    show(readings);
    EXPECT_EQ(journal, Texts{});
}

TEST_F(ListRefresh, OfWhatIsOffTheScreenSignalsNothing) {
    Readings readings = cpuReadings(100);
    show(readings);
    list.setViewport(0, 300);
    record();
    at(readings, "C0050").value = "55";
    show(readings);
    EXPECT_EQ(journal, Texts{});
    list.setViewport(firstCardRowTop(50), 10);
    EXPECT_EQ(row(0, 0, SensorRowsModel::ValueRole), "55°");
}

TEST_F(ListRefresh, SignalsEachThingThatChangedInARow) {
    Readings readings = cpuReadings(3);
    list.setViewport(0, 1000);
    show(readings);
    record();
    at(readings, "C0000").name = "Probe 0000 b";
    at(readings, "C0001").unit = "W";
    at(readings, "C0002").type = "flt ";
    show(readings);
    EXPECT_EQ(journal, (Texts{"cpu: change 0 name", "cpu: change 1 metadata valueText",
                              "cpu: change 2 metadata", "cards: change 0 valueShape"}));
}

TEST_F(ListRefresh, APinSignalsItsRowAlone) {
    const Readings readings = cpuReadings(10) + thermalReadings(10);
    list.setViewport(0, 2000);
    show(readings, {"C0002"});
    record();
    show(readings, {"C0002", "T0005"});
    EXPECT_EQ(journal, Texts{"thermal: change 5 isMenuBarSelected toolTip backgroundColors"});
    record();
    show(readings, {"T0005"});
    EXPECT_EQ(journal, Texts{"cpu: change 2 isMenuBarSelected toolTip backgroundColors"});
    record();
    show(readings, {"K999", "T0005"});
    EXPECT_EQ(journal, Texts{});
}

TEST_F(ListRefresh, ARowThatComesMovesWhatIsBelow) {
    list.setViewport(0, 2000);
    show(cpuReadings(1) + cpuReadings(1, 2) + thermalReadings(1));
    record();
    show(cpuReadings(3) + thermalReadings(1));
    EXPECT_EQ(journal,
              (Texts{"height", "cpu: insert 1", "cpu: change 2 number rowTop", "thermal: change 0 number",
                     "cards: change 0 count cardHeight", "cards: change 1 cardTop"}));
}

TEST_F(ListRefresh, ACardComesWithItsRows) {
    list.setViewport(0, 2000);
    show(thermalReadings(1));
    int rowsWhenInserted = -1;
    QObject::connect(list.cards(), &QAbstractItemModel::rowsInserted,
                     [&](const QModelIndex&, int first, int) { rowsWhenInserted = rows(first).rowCount(); });
    show(cpuReadings(2) + thermalReadings(1));
    EXPECT_EQ(rowsWhenInserted, 2);
}

TEST_F(ListRefresh, ARowThatChangesItsSectionMovesToThatCard) {
    Readings readings = cpuReadings(2) + thermalReadings(1);
    list.setViewport(0, 2000);
    show(readings);
    at(readings, "C0001").category = SMCCategory::sensors;
    show(readings);
    EXPECT_EQ(built(), (Texts{"[cpu]", "C0000", "[thermal]", "T0000", "C0001"}));
}

// What the user looks at stays in place

TEST_F(ListInPlace, WhenRowsComeAbove) {
    show(cpuReadings(50, 10));
    View view(list, 300);
    view.scrollTo(500);
    const double onScreen = topOf("C0022").value() - view.top();
    show(cpuReadings(53, 7));
    EXPECT_EQ(view.requestedTops, std::vector{500 + 3 * pitch()});
    EXPECT_EQ(topOf("C0022").value() - view.top(), onScreen);
}

TEST_F(ListInPlace, WhenRowsAboveGo) {
    show(cpuReadings(50));
    View view(list, 300);
    view.scrollTo(500);
    const Texts before = built();
    show(cpuReadings(46, 4));
    EXPECT_EQ(view.requestedTops, std::vector{500 - 4 * pitch()});
    EXPECT_EQ(built(), before);
}

TEST_F(ListInPlace, WhenRowsAboveGoAtTheEndOfTheList) {
    show(cpuReadings(50));
    View view(list, 300);
    view.scrollTo(list.contentHeight());
    const Texts before = built();
    const double onScreen = topOf("C0048").value() - view.top();
    show(cpuReadings(46, 4));
    EXPECT_EQ(built(), before);
    ASSERT_TRUE(topOf("C0048").has_value());
    EXPECT_EQ(topOf("C0048").value() - view.top(), onScreen);
}

TEST_F(ListInPlace, WhenACardAboveComesAndGoes) {
    const Readings thermal = thermalReadings(50);
    show(thermal);
    View view(list, 300);
    view.scrollTo(700);
    const Texts before = built();
    show(cpuReadings(5) + thermal);
    EXPECT_EQ(built(), before);
    EXPECT_EQ(view.top(), 700 + heightOfCard(5) + metrics.spacing);
    show(thermal);
    EXPECT_EQ(built(), before);
    EXPECT_EQ(view.top(), 700);
}

TEST_F(ListInPlace, WhenRowsBelowComeAndGo) {
    show(cpuReadings(50));
    View view(list, 300);
    view.scrollTo(500);
    show(cpuReadings(60) + thermalReadings(10));
    show(cpuReadings(30));
    EXPECT_EQ(view.requestedTops, std::vector<double>{});
    EXPECT_EQ(view.top(), 500);
}

TEST_F(ListInPlace, TheNextRowWhenTheFirstOnTheScreenIsGone) {
    show(cpuReadings(50));
    View view(list, 300);
    view.scrollTo(firstCardRowTop(10));
    ASSERT_EQ(built().at(1), "C0010");
    show(without(cpuReadings(50), {"C0010", "C0011"}));
    EXPECT_EQ(topOf("C0012").value() - view.top(), 2 * pitch());
    EXPECT_EQ(view.requestedTops, std::vector{firstCardRowTop(8)});
}

TEST_F(ListInPlace, ARowInTheMiddleOfTheScreenMakesWayBelowIt) {
    show(without(cpuReadings(50), {"C0012"}));
    View view(list, 300);
    view.scrollTo(firstCardRowTop(10));
    show(cpuReadings(50));
    EXPECT_EQ(view.requestedTops, std::vector<double>{});
    EXPECT_EQ(built().at(3), "C0012");
}

TEST_F(ListInPlace, AtTheTopWhatComesAboveStaysInView) {
    show(cpuReadings(50, 10));
    View view(list, 300);
    show(cpuReadings(53, 7));
    EXPECT_EQ(view.requestedTops, std::vector<double>{});
    EXPECT_EQ(view.top(), 0);
    EXPECT_EQ(built().at(1), "C0007");
}

TEST_F(ListInPlace, TheHoveredRowEvenAtTheTop) {
    show(cpuReadings(50, 10));
    View view(list, 300);
    const double onScreen = topOf("C0012").value();
    list.hover("C0012", true);
    show(cpuReadings(53, 7));
    EXPECT_EQ(view.requestedTops, std::vector{3 * pitch()});
    EXPECT_EQ(topOf("C0012").value() - view.top(), onScreen);
}

TEST_F(ListInPlace, TheHoveredRowBeforeTheOthers) {
    show(without(cpuReadings(50), {"C0012"}));
    View view(list, 300);
    view.scrollTo(firstCardRowTop(10));
    list.hover("C0014", true);
    const double onScreen = topOf("C0014").value() - view.top();
    show(cpuReadings(50));
    EXPECT_EQ(view.requestedTops, std::vector{firstCardRowTop(11)});
    EXPECT_EQ(topOf("C0014").value() - view.top(), onScreen);
}

TEST_F(ListInPlace, ThoseOnTheScreenWhenTheHoveredRowIsGone) {
    show(cpuReadings(50));
    View view(list, 300);
    view.scrollTo(firstCardRowTop(10));
    list.hover("C0012", true);
    show(without(cpuReadings(50), {"C0003", "C0012"}));
    EXPECT_EQ(view.requestedTops, std::vector{firstCardRowTop(9)});
    EXPECT_EQ(built().at(1), "C0010");
}

TEST_F(ListInPlace, NothingAtTheTopWhenThePointerHasLeft) {
    show(cpuReadings(50, 10));
    View view(list, 300);
    list.hover("C0012", true);
    list.hover("C0012", false);
    show(cpuReadings(53, 7));
    EXPECT_EQ(view.top(), 0);
}

TEST_F(ListInPlace, TheHoveredRowAsFarAsTheListGoes) {
    show(cpuReadings(50));
    View view(list, 300);
    view.scrollTo(pitch());
    list.hover("C0004", true);
    show(cpuReadings(47, 3));
    EXPECT_EQ(view.top(), 0);
    EXPECT_EQ(topOf("C0004"), firstCardRowTop(1));
}

TEST_F(ListInPlace, ADifferentScrollPositionIsRequestedOnceWithTheRowsOfThatPosition) {
    show(cpuReadings(50, 10));
    View view(list, 5 * pitch());
    view.scrollTo(firstCardRowTop(20));
    record();
    show(cpuReadings(53, 7));
    Texts expected{"height", "scroll"};
    for (int number = 0; number < 5; ++number) {
        expected.push_back("cpu: change " + std::to_string(number) + " number rowTop");
    }
    expected.emplace_back("cards: change 0 count cardHeight");
    EXPECT_EQ(journal, expected);
}

TEST_F(ListInPlace, TheViewStaysInsideAListThatGetsShorter) {
    show(cpuReadings(50));
    View view(list, 300);
    view.scrollTo(list.contentHeight());
    show(cpuReadings(10));
    EXPECT_EQ(view.bottom(), list.contentHeight());
    EXPECT_EQ(built().back(), "C0009");
    show(cpuReadings(2));
    EXPECT_EQ(view.top(), 0);
    EXPECT_EQ(built(), (Texts{"[cpu]", "C0000", "C0001"}));
    show({});
    EXPECT_EQ(view.top(), 0);
    EXPECT_EQ(built(), Texts{});
    show(cpuReadings(50));
    EXPECT_EQ(built().at(1), "C0000");
}

TEST_F(ListInPlace, ThePointerMayComeToARowBeforeItLeavesAnother) {
    show(cpuReadings(50, 10));
    View view(list, 300);
    list.hover("C0012", true);
    list.hover("C0014", true);
    list.hover("C0012", false);
    const double before = *topOf("C0014");
    show(cpuReadings(60));
    EXPECT_EQ(*topOf("C0014") - view.top(), before);
}

TEST_F(ListInPlace, EveryRequestIsInsideTheList) {
    std::mt19937 random(4711);
    show(cpuReadings(100));
    View view(list, 300);
    for (int round = 0; round < 300; ++round) {
        view.scrollTo(static_cast<double>(random() % 5000));
        list.hover(QString::fromStdString(built().at(1)), random() % 2 == 0);
        Readings readings;
        for (int number = 0; number < 100; ++number) {
            if (random() % 4 > 0) readings.push_back(numberedReading(SMCCategory::cpu, number));
        }
        view.requestedTops.clear();
        show(readings);
        for (const double top : view.requestedTops) {
            ASSERT_GE(top, 0);
            ASSERT_LE(top, std::max(0.0, list.contentHeight() - view.height()));
        }
        ASSERT_EQ(built(), expectedOnScreen({{"cpu", keysOf(readings)}}, view.top(), view.bottom()));
    }
}

TEST_F(ListInPlace, OnAMachineWhoseReadingsComeAndGoEveryTime) {
    std::mt19937 random(815);
    std::map<std::string, std::unique_ptr<QAbstractItemModelTester>> testers;
    show(cpuReadings(600) + thermalReadings(400));
    View view(list, 690);
    view.scrollTo(9000);
    for (int round = 0; round < 60; ++round) {
        Readings cpu;
        Readings thermal;
        for (int number = 0; number < 1000; ++number) {
            if (random() % 2 == 0) continue;
            auto& readings = number < 600 ? cpu : thermal;
            readings.push_back(numberedReading(number < 600 ? SMCCategory::cpu : SMCCategory::thermal, number,
                                               static_cast<double>(random() % 100)));
        }
        show(cpu + thermal);
        ASSERT_EQ(built(), expectedOnScreen({{"cpu", keysOf(cpu)}, {"thermal", keysOf(thermal)}}, view.top(),
                                            view.bottom()))
            << "round " << round;
        for (int cardRow = 0; cardRow < list.cards()->rowCount(); ++cardRow) {
            auto& rowsTester = testers[card(cardRow, SensorCardsModel::IdRole).toString().toStdString()];
            if (rowsTester != nullptr) continue;
            rowsTester = std::make_unique<QAbstractItemModelTester>(
                &rows(cardRow), QAbstractItemModelTester::FailureReportingMode::Fatal);
        }
    }
}

// The keyboard

// Without moving

TEST_F(ListRefresh, InPlaceShowsNewValuesAndPinsInTheSameRows) {
    show(cpuReadings(3));
    list.setViewport(0, 600);
    const Texts before = built();
    Readings fresh = cpuReadings(4, 1);
    for (SMCReading& reading : fresh) reading.value = "77";
    list.updateInPlace(fresh, {"C0001"});
    EXPECT_EQ(built(), before);
    EXPECT_EQ(list.reading("C0000")->value, "40") << "gone, and shown as it was";
    EXPECT_EQ(row(0, 1, SensorRowsModel::ValueRole).toString(), QString::fromUtf8("77°"));
    EXPECT_TRUE(row(0, 1, SensorRowsModel::SelectedRole).toBool());
    EXPECT_EQ(list.reading("C0004"), nullptr) << "comes with the next update";
}

TEST_F(ListRefresh, InPlaceKeepsTheLastValueOfAReadingThatHasNone) {
    Readings readings = cpuReadings(1);
    show(readings);
    readings.front().value = "nan";
    list.updateInPlace(readings, {});
    EXPECT_EQ(list.reading("C0000")->value, "40");
}

// Places

TEST_F(ListOnScreen, TellsTheRowAtAPlace) {
    show(cpuReadings(2) + thermalReadings(1));
    const double top = firstCardRowTop(0);
    EXPECT_EQ(list.keyAt(top), "");
    EXPECT_EQ(list.keyAt(top + 1), "C0000");
    EXPECT_EQ(list.keyAt(top + metrics.rowHeight + 1), "") << "between two rows";
    EXPECT_EQ(list.keyAt(top + pitch() + 1), "C0001");
    EXPECT_EQ(list.keyAt(list.contentHeight() + 1), "");
    EXPECT_EQ(list.bottomOf("C0001"), top + pitch() + metrics.rowHeight);
    EXPECT_EQ(list.bottomOf("K999"), 0);
}

TEST_F(ListKeyboard, ComesToTheFirstRow) {
    show(cpuReadings(3) + thermalReadings(2));
    const View view(list, 300);
    EXPECT_EQ(current(), "");
    record();
    list.ensureCurrent();
    EXPECT_EQ(journal, Texts{"current C0000"});
    list.ensureCurrent();
    EXPECT_EQ(journal.size(), 1U);
}

TEST_F(ListKeyboard, ComesToTheFirstRowThatIsWhollyOnTheScreen) {
    show(cpuReadings(50));
    View view(list, 300);
    view.scrollTo(firstCardRowTop(20) + 1);
    list.ensureCurrent();
    EXPECT_EQ(current(), "C0021");
}

TEST_F(ListKeyboard, ComesBackToItsLastRow) {
    show(cpuReadings(50));
    View view(list, 300);
    list.setCurrentKey("C0002");
    view.scrollTo(1000);
    list.ensureCurrent();
    EXPECT_EQ(current(), "C0002");
}

TEST_F(ListKeyboard, BringsItsRowBackToTheScreen) {
    show(cpuReadings(50));
    View view(list, 300);
    list.setCurrentKey("C0002");
    view.scrollTo(1000);
    list.ensureCurrent();
    EXPECT_LE(view.top(), firstCardRowTop(2));
}

TEST_F(ListKeyboard, ARowThatWasPressedStaysWhereItIs) {
    show(cpuReadings(50));
    View view(list, 300);
    view.scrollTo(firstCardRowTop(3) + 10);
    list.setCurrentKey("C0003");
    EXPECT_EQ(current(), "C0003");
    EXPECT_EQ(view.top(), firstCardRowTop(3) + 10);
}

TEST_F(ListKeyboard, WhenRowsAboveGoWithItsRowTheNextTakesItsPlace) {
    show(cpuReadings(10));
    const View view(list, 300);
    list.setCurrentKey("C0005");
    show(without(cpuReadings(10), {"C0000", "C0001", "C0003", "C0005"}));
    EXPECT_EQ(current(), "C0006");
}

TEST_F(ListKeyboard, FindsNoRowInAnEmptyList) {
    const View view(list, 300);
    record();
    list.ensureCurrent();
    list.moveCurrent(1);
    list.moveCurrent(-1);
    list.moveCurrentByPages(1);
    list.moveCurrentToFirst();
    list.moveCurrentToLast();
    list.setCurrentKey("C0000");
    EXPECT_EQ(current(), "");
    EXPECT_EQ(journal, Texts{});
}

TEST_F(ListKeyboard, GoesDownThroughTheCardsToTheEndAndUpAgain) {
    show(cpuReadings(2) + thermalReadings(2));
    const View view(list, 1000);
    list.ensureCurrent();
    EXPECT_EQ(currentAfter(4, [&] { list.moveCurrent(1); }), (Texts{"C0001", "T0000", "T0001", "T0001"}));
    EXPECT_EQ(currentAfter(4, [&] { list.moveCurrent(-1); }), (Texts{"T0000", "C0001", "C0000", "C0000"}));
}

TEST_F(ListKeyboard, SignalsEachRowThatItGoesToOnce) {
    show(cpuReadings(2));
    const View view(list, 1000);
    record();
    for (int number = 0; number < 4; ++number) list.moveCurrent(1);
    list.moveCurrentToLast();
    list.setCurrentKey("C0001");
    EXPECT_EQ(journal, (Texts{"current C0000", "current C0001"}));
}

TEST_F(ListKeyboard, GoesAsFarAsThereAreRows) {
    show(cpuReadings(5) + thermalReadings(5));
    const View view(list, 1000);
    list.ensureCurrent();
    list.moveCurrent(7);
    EXPECT_EQ(current(), "T0002");
    list.moveCurrent(100);
    EXPECT_EQ(current(), "T0004");
    list.moveCurrent(-100);
    EXPECT_EQ(current(), "C0000");
}

TEST_F(ListKeyboard, TheFirstMoveOnlyComesToTheList) {
    show(cpuReadings(5));
    const View view(list, 1000);
    list.moveCurrent(1);
    EXPECT_EQ(current(), "C0000");
}

TEST_F(ListKeyboard, GoesToBothEndsAtOnce) {
    show(cpuReadings(50) + thermalReadings(50));
    const View view(list, 300);
    list.moveCurrentToLast();
    EXPECT_EQ(current(), "T0049");
    EXPECT_EQ(view.bottom(),
              list.contentHeight() - metrics.margin - metrics.cardFooter - metrics.rowGap + metrics.margin);
    EXPECT_EQ(built().back(), "T0049");
    list.moveCurrentToFirst();
    EXPECT_EQ(current(), "C0000");
    EXPECT_EQ(view.top(), 0);
}

TEST_F(ListKeyboard, APageIsARowLessThanTheScreen) {
    show(cpuReadings(20));
    const View view(list, 6 * pitch() + 10);
    list.ensureCurrent();
    EXPECT_EQ(currentAfter(5, [&] { list.moveCurrentByPages(1); }),
              (Texts{"C0005", "C0010", "C0015", "C0019", "C0019"}));
    EXPECT_EQ(currentAfter(5, [&] { list.moveCurrentByPages(-1); }),
              (Texts{"C0014", "C0009", "C0004", "C0000", "C0000"}));
}

TEST_F(ListKeyboard, APageIsARowAtLeast) {
    show(cpuReadings(20));
    const View view(list, 10);
    list.moveCurrentToFirst();
    list.moveCurrentByPages(1);
    EXPECT_EQ(current(), "C0001");
    list.moveCurrentByPages(-1);
    EXPECT_EQ(current(), "C0000");
}

TEST_F(ListKeyboard, ScrollsNoFurtherThanNeeded) {
    show(cpuReadings(50));
    View view(list, 300);
    list.ensureCurrent();
    EXPECT_EQ(view.requestedTops, std::vector<double>{});
    list.setCurrentKey("C0004");
    EXPECT_EQ(view.requestedTops, std::vector<double>{});
    list.moveCurrent(1);
    const double top = firstCardRowTop(5) + metrics.rowHeight + metrics.margin - 300;
    EXPECT_EQ(view.requestedTops, std::vector{top});
    list.moveCurrent(-1);
    EXPECT_EQ(view.requestedTops, std::vector{top});
    view.scrollTo(1000);
    view.requestedTops.clear();
    list.moveCurrent(1);
    EXPECT_EQ(view.requestedTops, std::vector{firstCardRowTop(5) - metrics.margin});
}

TEST_F(ListKeyboard, TheRowThatItGoesToIsBuiltWhenItIsCurrent) {
    show(cpuReadings(100));
    const View view(list, 300);
    list.ensureCurrent();
    bool wasBuilt = false;
    QObject::connect(&list, &SensorList::currentKeyChanged,
                     [&] { wasBuilt = topOf(list.currentKey().toStdString()).has_value(); });
    list.moveCurrent(90);
    EXPECT_EQ(current(), "C0090");
    EXPECT_TRUE(wasBuilt);
}

TEST_F(ListKeyboard, TheHeaderOfACardIsSeenWithItsFirstRow) {
    show(cpuReadings(50) + thermalReadings(50));
    View view(list, 300);
    const double cardTop = metrics.margin + heightOfCard(50) + metrics.spacing;
    view.scrollTo(cardTop + 500);
    list.setCurrentKey("T0001");
    list.ensureCurrent();
    EXPECT_EQ(view.top(), cardTop + metrics.cardHeader + pitch() - metrics.margin);
    list.moveCurrent(-1);
    EXPECT_EQ(view.top(), cardTop - metrics.margin);
    view.scrollTo(0);
    list.moveCurrentToFirst();
    EXPECT_EQ(view.top(), 0);
}

TEST_F(ListKeyboard, GoesToARowOnlyIfThereIsOne) {
    show(cpuReadings(5));
    const View view(list, 300);
    list.setCurrentKey("C0003");
    record();
    list.setCurrentKey("C0009");
    list.setCurrentKey("");
    EXPECT_EQ(current(), "C0003");
    EXPECT_EQ(journal, Texts{});
}

TEST_F(ListKeyboard, StaysAtItsRowWhenOthersComeAndGo) {
    show(cpuReadings(10, 10));
    const View view(list, 300);
    list.setCurrentKey("C0012");
    record();
    show(cpuReadings(12, 5));
    show(thermalReadings(3) + cpuReadings(2, 12));
    EXPECT_EQ(current(), "C0012");
    EXPECT_EQ(std::ranges::count(journal, "current C0012"), 0);
}

TEST_F(ListKeyboard, WhenItsRowIsGoneTheNextTakesItsPlace) {
    show(cpuReadings(5));
    const View view(list, 300);
    list.setCurrentKey("C0002");
    record();
    show(without(cpuReadings(5), {"C0002"}));
    EXPECT_EQ(current(), "C0003");
    EXPECT_EQ(std::ranges::count(journal, "current C0003"), 1);
    show(without(cpuReadings(5), {"C0002"}), {}, {"C0003"});
    EXPECT_EQ(current(), "C0004");
}

TEST_F(ListKeyboard, WhenTheLastRowIsGoneTheOneBeforeTakesItsPlace) {
    show(cpuReadings(5) + thermalReadings(1));
    const View view(list, 300);
    list.moveCurrentToLast();
    show(cpuReadings(5));
    EXPECT_EQ(current(), "C0004");
    show(cpuReadings(2));
    EXPECT_EQ(current(), "C0001");
}

TEST_F(ListKeyboard, WhenItsRowIsTheLastOfItsCardTheNextCardIsNext) {
    show(cpuReadings(2) + thermalReadings(2));
    const View view(list, 300);
    list.setCurrentKey("C0001");
    show(cpuReadings(1) + thermalReadings(2));
    EXPECT_EQ(current(), "T0000");
}

TEST_F(ListKeyboard, WhenAllRowsAreGoneThereIsNoRow) {
    show(cpuReadings(5));
    const View view(list, 300);
    list.setCurrentKey("C0002");
    record();
    show({});
    EXPECT_EQ(current(), "");
    EXPECT_EQ(std::ranges::count(journal, "current "), 1);
    show(cpuReadings(5));
    EXPECT_EQ(current(), "");
    list.ensureCurrent();
    EXPECT_EQ(current(), "C0000");
}

TEST_F(ListKeyboard, WhenTheCurrentRowGoesItsReadingIsThatOfTheNext) {
    show(cpuReadings(3));
    const View view(list, 300);
    list.setCurrentKey("C0001");
    std::string keyOfReading;
    QObject::connect(&list, &SensorList::currentKeyChanged, [&] {
        const SMCReading* const reading = list.reading(list.currentKey());
        keyOfReading = reading == nullptr ? "none" : reading->key;
    });
    show(without(cpuReadings(3), {"C0001"}));
    EXPECT_EQ(keyOfReading, "C0002");
}

} // namespace
} // namespace kelvinbar::sensor_list_test
