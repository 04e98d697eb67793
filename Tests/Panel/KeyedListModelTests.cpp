// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Panel/KeyedListModel.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

namespace sallowmere {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A list of letters, whose entries are their numbers. Notes what is announced.
class KeyedListModelTest : public testing::Test {
protected:
    KeyedListModelTest() {
        using Model = QAbstractItemModel;
        const auto note = [this](const char* what, int first, int last) {
            announced.push_back(QStringLiteral("%1 %2 %3").arg(what).arg(first).arg(last));
        };
        QObject::connect(&model, &Model::rowsInserted, &model,
                         [=](const QModelIndex&, int first, int last) { note("+", first, last); });
        QObject::connect(&model, &Model::rowsRemoved, &model,
                         [=](const QModelIndex&, int first, int last) { note("-", first, last); });
        QObject::connect(&model, &Model::rowsMoved, &model,
                         [=](const QModelIndex&, int from, int, const QModelIndex&, int to) {
                             note("move", from, to);
                         });
        QObject::connect(&model, &Model::dataChanged, &model,
                         [=](const QModelIndex& first, const QModelIndex& last) {
                             note("=", first.row(), last.row());
                         });
    }

    void update(const QString& letters, int number = 0) {
        std::vector<KeyedListModel::Row> rows;
        for (const QChar letter : letters) {
            rows.push_back({QString(letter), QStringLiteral("%1%2").arg(letter).arg(number)});
        }
        model.update(rows);
    }

    QString shown() const {
        QString all;
        for (int row = 0; row < model.rowCount(); ++row) {
            all += model.data(model.index(row), Qt::UserRole).toString();
        }
        return all;
    }

    KeyedListModel model;
    std::vector<QString> announced;
};

TEST_F(KeyedListModelTest, HasOneRole) {
    EXPECT_EQ(model.roleNames(), (QHash<int, QByteArray>{{Qt::UserRole, "entry"}}));
    update(QStringLiteral("a"));
    EXPECT_EQ(model.data(model.index(0), Qt::UserRole), "a0");
    EXPECT_FALSE(model.data(model.index(0), Qt::DisplayRole).isValid());
    EXPECT_FALSE(model.data({}, Qt::UserRole).isValid());
    EXPECT_EQ(model.rowCount(model.index(0)), 0);
}

TEST_F(KeyedListModelTest, AnnouncesNothingWhenNothingChanges) {
    update(QStringLiteral("abc"));
    announced.clear();
    update(QStringLiteral("abc"));
    EXPECT_THAT(announced, IsEmpty());
}

TEST_F(KeyedListModelTest, InsertsAndRemovesRowsWhereTheyAre) {
    update(QStringLiteral("ac"));
    announced.clear();
    update(QStringLiteral("abcd"));
    EXPECT_THAT(announced, ElementsAre("+ 1 1", "+ 3 3"));
    announced.clear();
    update(QStringLiteral("bd"));
    EXPECT_THAT(announced, ElementsAre("- 2 2", "- 0 0"));
    update(QString());
    EXPECT_EQ(model.rowCount(), 0);
}

TEST_F(KeyedListModelTest, MovesARowThatOvertookOthers) {
    update(QStringLiteral("abcd"));
    announced.clear();
    update(QStringLiteral("cabd"));
    EXPECT_EQ(shown(), "c0a0b0d0");
    EXPECT_THAT(announced, ElementsAre("move 2 0"));
}

TEST_F(KeyedListModelTest, ChangesAnEntryInPlace) {
    update(QStringLiteral("ab"));
    announced.clear();
    model.update({{QStringLiteral("a"), QStringLiteral("a0")},
                  {QStringLiteral("b"), QStringLiteral("other")}});
    EXPECT_THAT(announced, ElementsAre("= 1 1"));
    EXPECT_EQ(shown(), "a0other");
}

TEST_F(KeyedListModelTest, KeepsTrackOfRowsThatAreHeld) {
    update(QStringLiteral("abc"));
    const QPersistentModelIndex held = model.index(2);
    update(QStringLiteral("xcyb"), 1);
    EXPECT_EQ(held.row(), 1);
    EXPECT_EQ(held.data(Qt::UserRole), "c1");
    update(QStringLiteral("xy"));
    EXPECT_FALSE(held.isValid());
}

TEST_F(KeyedListModelTest, BecomesEveryOrderOfItsRows) {
    update(QStringLiteral("abcd"));
    std::string order = "abcd";
    do {
        update(QString::fromStdString(order), 1);
        QString expected;
        for (const char letter : order) {
            expected += QStringLiteral("%1%2").arg(QLatin1Char(letter)).arg(1);
        }
        ASSERT_EQ(shown(), expected);
    } while (std::next_permutation(order.begin(), order.end()));
}

TEST_F(KeyedListModelTest, ShowsRowsThatWronglyShareAKey) {
    update(QStringLiteral("aba"));
    EXPECT_EQ(shown(), "a0b0a0");
    update(QStringLiteral("ba"));
    EXPECT_EQ(shown(), "b0a0");
    update(QStringLiteral("aab"));
    EXPECT_EQ(shown(), "a0a0b0");
}

} // namespace
} // namespace sallowmere
