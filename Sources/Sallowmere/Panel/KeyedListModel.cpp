// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Panel/KeyedListModel.h"

#include <QSet>

#include <algorithm>

namespace sallowmere {

namespace {

constexpr int entryRole = Qt::UserRole;

} // namespace

int KeyedListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant KeyedListModel::data(const QModelIndex& index, int role) const {
    return index.isValid() && role == entryRole
               ? rows_.at(static_cast<std::size_t>(index.row())).entry
               : QVariant();
}

QHash<int, QByteArray> KeyedListModel::roleNames() const {
    return {{entryRole, "entry"}};
}

void KeyedListModel::update(const std::vector<Row>& rows) {
    removeAllBut(rows);
    for (int place = 0; place < static_cast<int>(rows.size()); ++place) {
        bringTo(place, rows[static_cast<std::size_t>(place)]);
    }
    // What shared its key with another.
    if (rows_.size() > rows.size()) {
        beginRemoveRows({}, static_cast<int>(rows.size()), rowCount() - 1);
        rows_.resize(rows.size());
        endRemoveRows();
    }
}

void KeyedListModel::removeAllBut(const std::vector<Row>& rows) {
    QSet<QString> kept;
    for (const Row& row : rows) {
        kept.insert(row.key);
    }
    for (int place = rowCount() - 1; place >= 0; --place) {
        if (!kept.contains(rows_[static_cast<std::size_t>(place)].key)) {
            beginRemoveRows({}, place, place);
            rows_.erase(rows_.begin() + place);
            endRemoveRows();
        }
    }
}

void KeyedListModel::bringTo(int place, const Row& row) {
    const auto target = rows_.begin() + place;
    const auto present = std::find_if(
        target, rows_.end(), [&](const Row& candidate) { return candidate.key == row.key; });
    if (present == rows_.end()) {
        beginInsertRows({}, place, place);
        rows_.insert(target, row);
        endInsertRows();
        return;
    }
    if (present != target) {
        const int from = static_cast<int>(present - rows_.begin());
        beginMoveRows({}, from, from, {}, place);
        std::rotate(target, present, present + 1);
        endMoveRows();
    }
    Row& shown = rows_[static_cast<std::size_t>(place)];
    if (shown.entry != row.entry) {
        shown.entry = row.entry;
        emit dataChanged(index(place), index(place));
    }
}

} // namespace sallowmere
