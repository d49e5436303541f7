#include "screens/history/HistoryModel.h"

using namespace Qt::StringLiterals;

namespace quilmora {

void HistoryModel::setRecords(const QList<HistoryRecord> &records)
{
    beginResetModel();
    m_records = records;
    endResetModel();
}

QString HistoryModel::timeText(const HistoryRecord &record)
{
    return localDateText(record.createdAt, u"MM-dd HH:mm"_s);
}

int HistoryModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_records.size());
}

QVariant HistoryModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    const HistoryRecord &shown = record(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return shown.prompt;
    case Qt::AccessibleDescriptionRole:
        return QString{shown.modelID + u' ' + timeText(shown)}.trimmed();
    default:
        return {};
    }
}

} // namespace quilmora
