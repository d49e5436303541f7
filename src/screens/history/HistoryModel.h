#pragma once

#include "model/HistoryRecord.h"

#include <QAbstractListModel>
#include <QList>

namespace quilmora
{

/// The covers of the history as a list of items, in the order given. The text of an item is its prompt, its
/// description the model and the time.
class HistoryModel final : public QAbstractListModel
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HistoryModel)

public:
    explicit HistoryModel(QObject *parent = nullptr) : QAbstractListModel{parent} {}
    ~HistoryModel() override = default;

    /// Replaces all covers.
    void setRecords(const QList<HistoryRecord> &newRecords);

    const QList<HistoryRecord> &all() const { return records; }

    /// The cover at a position that exists.
    const HistoryRecord &record(int position) const { return records.at(position); }

    /// When a cover was made, as its tile says it: in local time, without the year.
    static QString timeText(const HistoryRecord &record);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

private:
    QList<HistoryRecord> records;
};

} // namespace quilmora
