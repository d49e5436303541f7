#pragma once

#include "screens/history/TileFrame.h"

#include <QAbstractItemDelegate>
#include <QList>

#include <vector>

namespace quilmora {

class HistoryModel;
struct HistoryRecord;
class ThumbnailCache;

/// Paints a tile of the history grid: the picture in its square, the elided prompt, the model and the time.
class HistoryThumbnail final : public QAbstractItemDelegate
{
    Q_OBJECT

public:
    static constexpr double cornerRadius = 8; ///< Of the square, in device-independent pixels.

    /// Both must outlive the delegate. Only pictures in `thumbnails` are painted.
    HistoryThumbnail(const HistoryModel &model, ThumbnailCache &thumbnails, QObject *parent = nullptr);

    /// Of the texts below the squares, at that width of the tiles.
    static std::vector<int> textHeights(const QList<HistoryRecord> &records, int width);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    void paintSquare(QPainter &painter, const QRect &square, const QString &path, bool focused) const;

    const HistoryModel &m_model;
    ThumbnailCache &m_thumbnails;
    mutable TileFrame m_frame{cornerRadius};
};

} // namespace quilmora
