// What a Qt item model signalled: the first row each dataChanged named, rows inserted, resets.
#pragma once

#include <QAbstractItemModel>
#include <vector>

struct ModelSignals {
    explicit ModelSignals(QAbstractItemModel& m) {
        QObject::connect(
            &m, &QAbstractItemModel::dataChanged,
            [this](const QModelIndex& tl, const QModelIndex&) { changed.push_back(tl.row()); });
        QObject::connect(
            &m, &QAbstractItemModel::rowsInserted,
            [this](const QModelIndex&, int first, int last) { inserted += last - first + 1; });
        QObject::connect(&m, &QAbstractItemModel::modelReset, [this] { ++resets; });
    }
    std::vector<int> changed;
    int inserted = 0;
    int resets = 0;
};
