#pragma once

#include <QAbstractItemDelegate>
#include <QColor>
#include <QList>
#include <QPixmap>
#include <QSizeF>

#include <vector>

namespace quilmora {

class HistoryModel;
class ThumbnailCache;
struct HistoryRecord;

/// The background and the outline of the squares of tiles. Drawn once for all tiles, since this takes most of
/// the time of a painting.
class TileFrame final
{
public:
    /// `cornerRadius` in device-independent pixels.
    explicit TileFrame(double cornerRadius) : m_radius{cornerRadius} {}

    /// Draws both again if a size, in device-independent pixels, or a color has changed.
    void prepare(QSizeF size, double lineWidth, double devicePixelRatio);

    const QPixmap &background() const { return m_background; }
    const QPixmap &outline() const { return m_outline; }

private:
    struct Look {
        QSize pixels;
        double lineWidth = 0;
        double devicePixelRatio = 0;
        QColor backgroundColor;
        QColor lineColor;

        bool operator==(const Look &) const = default;
    };

    const double m_radius;
    Look m_look;
    QPixmap m_background;
    QPixmap m_outline;
};

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
