// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractListModel>
#include <QString>
#include <QVariant>

#include <vector>

namespace sallowmere {

/// A list for views that changes in place: rows that stay keep their views, and with them what the
/// user does there. Main thread only.
class KeyedListModel : public QAbstractListModel {
    Q_OBJECT

public:
    struct Row {
        /// Tells the rows of one list apart.
        QString key;
        /// What a view shows; compared to find out what changed.
        QVariant entry;
    };

    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex& parent = {}) const override;
    /// The entry of a row, for its only role, "entry".
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// Becomes that list by as few removals, moves and insertions as rows came, went or overtook
    /// others, and announces only the entries that changed.
    void update(const std::vector<Row>& rows);

private:
    void removeAllBut(const std::vector<Row>& rows);
    void bringTo(int place, const Row& row);

    std::vector<Row> rows_;
};

} // namespace sallowmere
