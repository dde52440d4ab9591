#include "panel/KeyedListModel.h"

#include <QAbstractItemModelTester>
#include <QPersistentModelIndex>
#include <algorithm>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::keyed_list_model_test {

namespace {

struct Item {
    std::string key;
    int value = 0;
    int color = 0;

    [[nodiscard]] std::string_view id() const { return key; }

    [[nodiscard]] QList<int> changedRoles(const Item& next) const;

    friend bool operator==(const Item&, const Item&) = default;
};

using Items = std::vector<Item>;

class Model final : public KeyedListModel<Item> {
  public:
    enum Role { KeyRole = Qt::UserRole, ValueRole, ColorRole };

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override {
        if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
        const Item& item = items()[static_cast<std::size_t>(index.row())];
        if (role == KeyRole) return QString::fromStdString(item.key);
        if (role == ValueRole) return item.value;
        return role == ColorRole ? QVariant(item.color) : QVariant();
    }

    [[nodiscard]] Item itemAt(int row) const {
        const QModelIndex place = index(row);
        return {place.data(KeyRole).toString().toStdString(), place.data(ValueRole).toInt(),
                place.data(ColorRole).toInt()};
    }
};

QList<int> Item::changedRoles(const Item& next) const {
    QList<int> roles;
    if (value != next.value) roles << Model::ValueRole;
    if (color != next.color) roles << Model::ColorRole;
    return roles;
}

/// A list that, like a view, knows the model by its signals only. It equals the model after each signal.
class Mirror {
  public:
    Items items;
    std::vector<std::string> signalTexts; ///< "insert 0-2", "remove 1-1", "move 4-4 to 0", "change 3-3 value"

    explicit Mirror(Model& model) : model_(model) {
        read(0, model.rowCount() - 1);
        QObject::connect(&model, &Model::rowsInserted, &context_,
                         [this](const QModelIndex&, int first, int last) { insert(first, last); });
        QObject::connect(&model, &Model::rowsRemoved, &context_,
                         [this](const QModelIndex&, int first, int last) { remove(first, last); });
        QObject::connect(&model, &Model::rowsMoved, &context_,
                         [this](const QModelIndex&, int first, int last, const QModelIndex&, int to) {
                             move(first, last, to);
                         });
        QObject::connect(&model, &Model::dataChanged, &context_,
                         [this](const QModelIndex& first, const QModelIndex& last, const QList<int>& roles) {
                             change(first.row(), last.row(), roles);
                         });
        QObject::connect(&model, &Model::layoutChanged, &context_,
                         [this] { signalTexts.emplace_back("layout"); });
        QObject::connect(&model, &Model::modelReset, &context_,
                         [this] { signalTexts.emplace_back("reset"); });
    }

    [[nodiscard]] std::size_t signalCount() const { return signalTexts.size(); }

  private:
    static std::string range(int first, int last) {
        return std::to_string(first) + "-" + std::to_string(last);
    }

    void read(int first, int last) {
        for (int row = first; row <= last; ++row) items.insert(items.begin() + row, model_.itemAt(row));
    }

    void insert(int first, int last) {
        signalTexts.push_back("insert " + range(first, last));
        read(first, last);
        expectToBeTheModel();
    }

    void remove(int first, int last) {
        signalTexts.push_back("remove " + range(first, last));
        items.erase(items.begin() + first, items.begin() + last + 1);
        expectToBeTheModel();
    }

    void move(int first, int last, int to) {
        signalTexts.push_back("move " + range(first, last) + " to " + std::to_string(to));
        const auto begin = items.begin();
        if (to < first) {
            std::rotate(begin + to, begin + first, begin + last + 1);
        } else {
            std::rotate(begin + first, begin + last + 1, begin + to);
        }
        expectToBeTheModel();
    }

    void change(int first, int last, const QList<int>& roles) {
        std::string text = "change " + range(first, last);
        if (roles.contains(Model::ValueRole)) text += " value";
        if (roles.contains(Model::ColorRole)) text += " color";
        signalTexts.push_back(text);
        for (int row = first; row <= last; ++row) {
            Item& item = items[static_cast<std::size_t>(row)];
            const Item now = model_.itemAt(row);
            EXPECT_EQ(item.key, now.key);
            if (roles.contains(Model::ValueRole)) item.value = now.value;
            if (roles.contains(Model::ColorRole)) item.color = now.color;
        }
        expectToBeTheModel();
    }

    void expectToBeTheModel() const {
        ASSERT_EQ(static_cast<int>(items.size()), model_.rowCount()) << signalTexts.back();
        for (int row = 0; row < model_.rowCount(); ++row) {
            const auto index = static_cast<std::size_t>(row);
            ASSERT_EQ(items[index].key, model_.itemAt(row).key) << signalTexts.back() << ", row " << row;
            ASSERT_EQ(items[index], model_.itemAt(row)) << signalTexts.back() << ", row " << row;
        }
    }

    Model& model_;
    QObject context_; ///< owns the connections
};

using Texts = std::vector<std::string>;

/// Each letter is an item.
Items letters(std::string_view text) {
    Items items;
    for (const char letter : text) items.push_back({std::string(1, letter)});
    return items;
}

Items numberedItems(int first, int count, int step = 1) {
    Items items;
    for (int number = first; number < first + count * step; number += step) {
        items.push_back({"item " + std::to_string(number), number});
    }
    return items;
}

struct KeyedList : testing::Test {
    Model model;
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};

    /// The signals that change the model from one list to another.
    Texts signalsBetween(const Items& before, const Items& after) {
        model.update(before);
        const Mirror mirror(model);
        model.update(after);
        EXPECT_EQ(model.items(), after);
        EXPECT_EQ(mirror.items, after);
        return mirror.signalTexts;
    }

    Texts signalsBetween(std::string_view before, std::string_view after) {
        return signalsBetween(letters(before), letters(after));
    }
};

// Content

TEST_F(KeyedList, IsEmptyAtFirst) {
    EXPECT_EQ(model.rowCount(), 0);
    EXPECT_EQ(model.items(), Items{});
}

TEST_F(KeyedList, HasARowForEachItemAndNoneBelowThem) {
    model.update(letters("abc"));
    EXPECT_EQ(model.rowCount(), 3);
    EXPECT_EQ(model.rowCount(model.index(1)), 0);
    EXPECT_EQ(model.items(), letters("abc"));
}

// Signals

TEST_F(KeyedList, AnUnchangedListSignalsNothing) {
    EXPECT_EQ(signalsBetween("", ""), Texts{});
    EXPECT_EQ(signalsBetween("abc", "abc"), Texts{});
    EXPECT_EQ(signalsBetween(numberedItems(0, 300), numberedItems(0, 300)), Texts{});
}

TEST_F(KeyedList, AllItemsComeAtOnce) { EXPECT_EQ(signalsBetween("", "abcde"), Texts{"insert 0-4"}); }

TEST_F(KeyedList, AllItemsGoAtOnce) { EXPECT_EQ(signalsBetween("abcde", ""), Texts{"remove 0-4"}); }

TEST_F(KeyedList, AnotherListReplacesItInTwoSteps) {
    EXPECT_EQ(signalsBetween("abc", "uvwxyz"), (Texts{"remove 0-2", "insert 0-5"}));
}

TEST_F(KeyedList, OneItemThatComesIsOneSignal) {
    EXPECT_EQ(signalsBetween("bcd", "abcd"), Texts{"insert 0-0"});
    EXPECT_EQ(signalsBetween("abd", "abcd"), Texts{"insert 2-2"});
    EXPECT_EQ(signalsBetween("abc", "abcd"), Texts{"insert 3-3"});
}

TEST_F(KeyedList, OneItemThatGoesIsOneSignal) {
    EXPECT_EQ(signalsBetween("abcd", "bcd"), Texts{"remove 0-0"});
    EXPECT_EQ(signalsBetween("abcd", "abd"), Texts{"remove 2-2"});
    EXPECT_EQ(signalsBetween("abcd", "abc"), Texts{"remove 3-3"});
}

TEST_F(KeyedList, ItemsThatComeSideBySideAreOneSignal) {
    EXPECT_EQ(signalsBetween("ae", "abcde"), Texts{"insert 1-3"});
    EXPECT_EQ(signalsBetween("de", "abcde"), Texts{"insert 0-2"});
    EXPECT_EQ(signalsBetween("ab", "abcde"), Texts{"insert 2-4"});
    EXPECT_EQ(signalsBetween("be", "abcdefg"), (Texts{"insert 0-0", "insert 2-3", "insert 5-6"}));
}

TEST_F(KeyedList, ItemsThatGoSideBySideAreOneSignal) {
    EXPECT_EQ(signalsBetween("abcde", "ae"), Texts{"remove 1-3"});
    EXPECT_EQ(signalsBetween("abcde", "de"), Texts{"remove 0-2"});
    EXPECT_EQ(signalsBetween("abcde", "ab"), Texts{"remove 2-4"});
    EXPECT_EQ(signalsBetween("abcdefg", "be"), (Texts{"remove 5-6", "remove 2-3", "remove 0-0"}));
}

TEST_F(KeyedList, OneItemThatMovesUpIsOneSignal) {
    EXPECT_EQ(signalsBetween("abcdef", "fabcde"), Texts{"move 5-5 to 0"});
    EXPECT_EQ(signalsBetween("abcdef", "abecdf"), Texts{"move 4-4 to 2"});
}

TEST_F(KeyedList, OneItemThatMovesDownIsOneSignal) {
    EXPECT_EQ(signalsBetween("abcdef", "bcdefa").size(), 1U);
    EXPECT_EQ(signalsBetween("abcdef", "abdecf").size(), 1U);
}

TEST_F(KeyedList, NeighboursThatChangePlacesAreOneSignal) {
    EXPECT_EQ(signalsBetween("abcd", "acbd").size(), 1U);
}

TEST_F(KeyedList, TenChangedItemsOfManyAreTenSignalsWithTheChangedRolesOnly) {
    Items items = numberedItems(0, 300);
    const Items before = items;
    Texts expected;
    for (int row = 7; row < 300; row += 30) {
        Item& item = items[static_cast<std::size_t>(row)];
        item.value = -item.value;
        std::string text = "change " + std::to_string(row) + "-" + std::to_string(row) + " value";
        if (row % 60 == 7) {
            item.color = 5;
            text += " color";
        }
        expected.push_back(text);
    }
    ASSERT_EQ(expected.size(), 10U);
    EXPECT_EQ(signalsBetween(before, items), expected);
}

TEST_F(KeyedList, AnItemThatMovesAndChangesSignalsBoth) {
    EXPECT_EQ(signalsBetween({{"a", 1}, {"b", 2}, {"c", 3}}, {{"c", 3, 9}, {"a", 1}, {"b", 2}}),
              (Texts{"move 2-2 to 0", "change 0-0 color"}));
}

TEST_F(KeyedList, ANewItemComesAsItIsAndSignalsNoChange) {
    EXPECT_EQ(signalsBetween({{"a", 1}}, {{"a", 1}, {"b", 2, 3}, {"c", 4, 5}}), Texts{"insert 1-2"});
}

TEST_F(KeyedList, AnItemThatComesBackIsANewOne) {
    model.update({{"a", 1}, {"b", 2}});
    const QPersistentModelIndex place(model.index(1));
    model.update({{"a", 1}});
    EXPECT_FALSE(place.isValid());
    model.update({{"a", 1}, {"b", 2}});
    EXPECT_FALSE(place.isValid());
    EXPECT_EQ(model.items(), (Items{{"a", 1}, {"b", 2}}));
}

TEST_F(KeyedList, ComingGoingMovingAndChangingAtOnce) {
    EXPECT_EQ(
        signalsBetween({{"a"}, {"b"}, {"c"}, {"d"}, {"e"}}, {{"x"}, {"e"}, {"a"}, {"y"}, {"c", 1}}),
        (Texts{"remove 3-3", "remove 1-1", "insert 0-0", "move 3-3 to 1", "insert 3-3", "change 4-4 value"}));
}

TEST_F(KeyedList, WhatStaysKeepsItsPlaceInAView) {
    model.update(letters("abcdef"));
    const QPersistentModelIndex ofB(model.index(1));
    const QPersistentModelIndex ofE(model.index(4));
    model.update(letters("xefyzbw"));
    ASSERT_TRUE(ofB.isValid());
    ASSERT_TRUE(ofE.isValid());
    EXPECT_EQ(ofB.row(), 5);
    EXPECT_EQ(ofE.row(), 1);
    EXPECT_EQ(ofB.data(Model::KeyRole), "b");
    EXPECT_EQ(ofE.data(Model::KeyRole), "e");
}

// Many

TEST_F(KeyedList, ManyItemsComeAndGoInAsManySignalsAsThereAreRuns) {
    const Items thousand = numberedItems(0, 1000);
    const Items evens = numberedItems(0, 500, 2);
    EXPECT_EQ(signalsBetween(thousand, evens).size(), 500U);
    EXPECT_EQ(signalsBetween(evens, thousand).size(), 500U);
    EXPECT_EQ(signalsBetween(evens, numberedItems(1, 500, 2)), (Texts{"remove 0-499", "insert 0-499"}));
    EXPECT_EQ(signalsBetween(numberedItems(0, 1000), numberedItems(100, 1000)),
              (Texts{"remove 0-99", "insert 900-999"}));
}

TEST_F(KeyedList, AThousandItemsInReverse) {
    Items reversed = numberedItems(0, 1000);
    std::ranges::reverse(reversed);
    EXPECT_LE(signalsBetween(numberedItems(0, 1000), reversed).size(), 999U);
}

TEST_F(KeyedList, EveryStepBetweenRandomListsIsConsistent) {
    std::mt19937 random(20240117);
    const auto upTo = [&](unsigned count) { return static_cast<int>(random() % count); };
    Mirror mirror(model);
    Items last;
    for (int round = 0; round < 400; ++round) {
        Items items;
        for (int number = 0; number < 24; ++number) {
            if (upTo(3) > 0) items.push_back({"item " + std::to_string(number), upTo(3), upTo(2)});
        }
        if (round % 3 == 0) std::ranges::shuffle(items, random);
        mirror.signalTexts.clear();
        model.update(items);
        ASSERT_EQ(model.items(), items) << "round " << round;
        ASSERT_EQ(mirror.items, items) << "round " << round;
        ASSERT_EQ(mirror.signalCount() == 0, items == last) << "round " << round;
        ASSERT_FALSE(HasFailure()) << "round " << round;
        last = items;
    }
}

TEST_F(KeyedList, RandomListsWithoutMovesTakeOneSignalForEachRunAndChange) {
    std::mt19937 random(77);
    const auto oneIn = [&](unsigned count) { return random() % count == 0; };
    Mirror mirror(model);
    std::vector<bool> wasThere(200);
    for (int round = 0; round < 100; ++round) {
        Items items;
        std::vector<bool> isThere(200);
        std::size_t runs = 0;
        bool isInNewRun = false;  // since the last remaining item
        bool isInGoneRun = false; // likewise
        for (std::size_t number = 0; number < isThere.size(); ++number) {
            isThere[number] = !oneIn(3);
            if (isThere[number]) items.push_back({std::to_string(number)});
            if (isThere[number] && wasThere[number]) isInNewRun = isInGoneRun = false;
            if (isThere[number] && !wasThere[number] && !isInNewRun) {
                isInNewRun = true;
                ++runs;
            }
            if (!isThere[number] && wasThere[number] && !isInGoneRun) {
                isInGoneRun = true;
                ++runs;
            }
        }
        mirror.signalTexts.clear();
        model.update(items);
        ASSERT_EQ(model.items(), items);
        ASSERT_EQ(mirror.signalCount(), runs) << "round " << round;
        wasThere = isThere;
    }
}

} // namespace
} // namespace kelvinbar::keyed_list_model_test
