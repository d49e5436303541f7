#pragma once

#include "screens/history/GridGeometry.h"
#include "screens/history/HistoryModel.h"
#include "screens/history/ThumbnailCache.h"

#include <QAbstractItemView>
#include <QTimer>

namespace quilmora {

/// The covers of the history as a scrolling grid of tiles. Only visible tiles are painted, and their pictures
/// are read one at a time between events.
class HistoryGrid final : public QAbstractItemView
{
    Q_OBJECT

public:
    /// Both must outlive the grid.
    HistoryGrid(HistoryModel &model, ThumbnailCache &thumbnails, QWidget *parent = nullptr);

    QRect visualRect(const QModelIndex &index) const override;
    void scrollTo(const QModelIndex &index, ScrollHint hint = EnsureVisible) override;
    QModelIndex indexAt(const QPoint &point) const override;
    void reset() override;

    /// Whether the last painting showed every visible picture in its size.
    bool isFilled() const { return m_filled; }

Q_SIGNALS:
    /// By a click, by Return or Space, or by a screen reader.
    void opened(int position);

protected:
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    int horizontalOffset() const override { return 0; }
    int verticalOffset() const override;
    bool isIndexHidden(const QModelIndex & /*index*/) const override { return false; }
    void setSelection(const QRect &area, QItemSelectionModel::SelectionFlags flags) override;
    QRegion visualRegionForSelection(const QItemSelection &selection) const override;
    void updateGeometries() override;
    void scrollContentsBy(int dx, int dy) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    std::pair<int, int> visiblePositions() const;
    ThumbnailCache::Square square() const;
    int nextToRead(int first, int end);
    void fillNext();
    /// Reports the focused tile, if any, to screen readers.
    void notifyFocus();

    HistoryModel &m_records;
    ThumbnailCache &m_thumbnails;
    ThumbnailReader m_reader;
    GridGeometry m_tiles;
    QTimer m_fillTimer;
    bool m_filled = false;
    bool m_focusByKeyboard = false;
};

} // namespace quilmora
