#pragma once

#include "screens/history/GridGeometry.h"
#include "screens/history/HistoryModel.h"
#include "screens/history/ThumbnailCache.h"
#include "screens/history/ThumbnailReader.h"

#include <QAbstractItemView>
#include <QTimer>

namespace quilmora
{

/// The covers of the history as a scrolling grid of tiles. Only the tiles in sight are drawn, and their
/// pictures are read one at a time, in slices between events.
class HistoryGrid final : public QAbstractItemView
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HistoryGrid)

public:
    /// Both must outlive the grid.
    HistoryGrid(HistoryModel &model, ThumbnailCache &pictures, QWidget *parent = nullptr);
    ~HistoryGrid() override = default;

    QRect visualRect(const QModelIndex &index) const override;
    void scrollTo(const QModelIndex &index, ScrollHint hint = EnsureVisible) override;
    QModelIndex indexAt(const QPoint &point) const override;
    void reset() override;

    /// Whether what was drawn last showed every picture in sight, decoded for its present size.
    bool isFilled() const { return filled; }

Q_SIGNALS:
    /// A tile was clicked, or Return or Space was pressed on it, or a screen reader pressed it.
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
    std::pair<int, int> positionsInSight() const;
    ThumbnailCache::Square square() const;
    int nextToRead(int first, int end);
    void fillNext();
    /// Reports the tile that has the focus, if any, to screen readers.
    void notifyFocus();

    HistoryModel &records;
    ThumbnailCache &pictures;
    ThumbnailReader reader;
    GridGeometry tiles;
    QTimer fillTimer;
    bool filled = false;
    bool focusByKeyboard = false;
};

} // namespace quilmora
