#pragma once

#include "screens/history/TileFrame.h"

#include <QAbstractItemDelegate>
#include <QList>

#include <vector>

namespace quilmora
{

class HistoryModel;
struct HistoryRecord;
class ThumbnailCache;

/// Draws the tiles of the history grid: the picture in its square, the start of the prompt, the model and the
/// time.
class HistoryThumbnail final : public QAbstractItemDelegate
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HistoryThumbnail)

public:
    static constexpr double cornerRadius = 8; ///< Of the square, in device-independent pixels.

    /// Both must outlive the delegate. Pictures that are not in `pictures` yet are left out.
    HistoryThumbnail(const HistoryModel &model, ThumbnailCache &pictures, QObject *parent = nullptr);
    ~HistoryThumbnail() override = default;

    /// How much higher than wide each tile is at that width, in device-independent pixels.
    static std::vector<int> textHeights(const QList<HistoryRecord> &records, int width);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    void paintSquare(QPainter &painter, const QRect &square, const QString &path, bool focused) const;

    const HistoryModel &model;
    ThumbnailCache &pictures;
    mutable TileFrame frame{cornerRadius};
};

} // namespace quilmora
