#pragma once

#include "model/HistoryRecord.h"

#include <QAbstractListModel>
#include <QList>

namespace quilmora {

/// The covers of the history. The accessible text of an item is its prompt, its description the model and the
/// time.
class HistoryModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    explicit HistoryModel(QObject *parent = nullptr) : QAbstractListModel{parent} {}

    void setRecords(const QList<HistoryRecord> &records);

    const QList<HistoryRecord> &all() const { return m_records; }

    /// At an existing position.
    const HistoryRecord &record(int position) const { return m_records.at(position); }

    /// The time on its tile: in local time, without the year.
    static QString timeText(const HistoryRecord &record);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

private:
    QList<HistoryRecord> m_records;
};

} // namespace quilmora
