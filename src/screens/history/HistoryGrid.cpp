#include "screens/history/HistoryGrid.h"

#include "screens/common/KeyboardFocus.h"
#include "screens/history/HistoryGridAccessible.h"
#include "screens/history/HistoryThumbnail.h"

#include <QKeyEvent>
#include <QPainter>
#include <QResizeEvent>
#include <QScrollBar>

#include <algorithm>
#include <chrono>
#include <cstdlib>

using namespace std::chrono_literals;

namespace quilmora
{
namespace
{

/// Reading waits for so long after the last scrolling, which it would hold up.
constexpr auto restAfterScrolling = 60ms;
/// Events wait no longer than this for a picture that is being read.
constexpr auto slice = 4ms;
constexpr int scrollStep = 40;

} // namespace

HistoryGrid::HistoryGrid(HistoryModel &model, ThumbnailCache &cache, QWidget *parent)
    : QAbstractItemView{parent},
      records{model},
      pictures{cache},
      reader{cache}
{
    HistoryGridAccessible::install();
    setModel(&records);
    setItemDelegate(new HistoryThumbnail{records, pictures, this});
    setFrameShape(QFrame::NoFrame);
    setSelectionMode(NoSelection);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    // The window's background shows through.
    viewport()->setAutoFillBackground(false);
    fillTimer.setSingleShot(true);
    connect(&fillTimer, &QTimer::timeout, this, &HistoryGrid::fillNext);
    connect(this, &HistoryGrid::clicked, this,
            [this](const QModelIndex &index) { Q_EMIT opened(index.row()); });
}

int HistoryGrid::verticalOffset() const
{
    return verticalScrollBar()->value();
}

QRect HistoryGrid::visualRect(const QModelIndex &index) const
{
    return index.isValid() ? tiles.tile(index.row()).translated(0, -verticalOffset()) : QRect{};
}

QModelIndex HistoryGrid::indexAt(const QPoint &point) const
{
    const int position = tiles.positionAt(point + QPoint{0, verticalOffset()});
    return position < 0 ? QModelIndex{} : records.index(position);
}

void HistoryGrid::scrollTo(const QModelIndex &index, ScrollHint hint)
{
    const QRect tile = visualRect(index);
    const int room = viewport()->height() - tile.height();
    int shift = 0;
    if (hint == PositionAtTop || (hint == EnsureVisible && (tile.top() < 0 || room < 0))) {
        shift = tile.top();
    } else if (hint == PositionAtBottom || (hint == EnsureVisible && tile.top() > room)) {
        shift = tile.top() - room;
    } else if (hint == PositionAtCenter) {
        shift = tile.top() - room / 2;
    }
    verticalScrollBar()->setValue(verticalOffset() + shift);
}

void HistoryGrid::reset()
{
    const int offset = verticalOffset();
    updateGeometries();
    QAbstractItemView::reset();
    verticalScrollBar()->setValue(offset);
}

QModelIndex HistoryGrid::moveCursor(CursorAction action, Qt::KeyboardModifiers /*modifiers*/)
{
    const int last = records.rowCount() - 1;
    if (last < 0) {
        return {};
    }
    if (!currentIndex().isValid()) {
        return records.index(positionsInSight().first);
    }
    const int current = currentIndex().row();
    const int page = std::max(1, viewport()->height() / tiles.rowHeight(current / GridGeometry::columns)) *
                     GridGeometry::columns;
    const auto upBy = [&](int step) {
        return current < step ? current % GridGeometry::columns : current - step;
    };
    switch (action) {
    case MoveLeft:
    case MovePrevious:
        return records.index(std::max(0, current - 1));
    case MoveRight:
    case MoveNext:
        return records.index(std::min(last, current + 1));
    case MoveUp:
        return records.index(upBy(GridGeometry::columns));
    case MoveDown:
        return records.index(std::min(last, current + GridGeometry::columns));
    case MovePageUp:
        return records.index(upBy(page));
    case MovePageDown:
        return records.index(std::min(last, current + page));
    case MoveHome:
        return records.index(0);
    case MoveEnd:
        return records.index(last);
    }
    return currentIndex();
}

// Tiles are opened, not selected.
void HistoryGrid::setSelection(const QRect & /*area*/, QItemSelectionModel::SelectionFlags /*flags*/) {}

QRegion HistoryGrid::visualRegionForSelection(const QItemSelection & /*selection*/) const
{
    return {};
}

void HistoryGrid::updateGeometries()
{
    QAbstractItemView::updateGeometries();
    const int width = viewport()->width();
    tiles = GridGeometry{width, HistoryThumbnail::textHeights(records.all(), GridGeometry::tileWidth(width))};
    const int height = viewport()->height();
    verticalScrollBar()->setRange(0, std::max(0, tiles.contentHeight() - height));
    verticalScrollBar()->setPageStep(height);
    verticalScrollBar()->setSingleStep(scrollStep);
}

void HistoryGrid::scrollContentsBy(int /*dx*/, int /*dy*/)
{
    viewport()->update();
    if (fillTimer.isActive()) {
        fillTimer.start(restAfterScrolling);
    }
}

void HistoryGrid::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QAbstractItemView::currentChanged(current, previous);
    viewport()->update();
    notifyFocus();
}

void HistoryGrid::resizeEvent(QResizeEvent *event)
{
    // Keeps the tiles in sight that are.
    const double rows = tiles.rowsAbove(verticalOffset());
    QAbstractItemView::resizeEvent(event);
    verticalScrollBar()->setValue(tiles.heightOf(rows));
}

void HistoryGrid::keyPressEvent(QKeyEvent *event)
{
    focusByKeyboard = true;
    viewport()->update();
    const int key = event->key();
    if (currentIndex().isValid() && (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space)) {
        Q_EMIT opened(currentIndex().row());
        return;
    }
    QAbstractItemView::keyPressEvent(event);
}

void HistoryGrid::focusInEvent(QFocusEvent *event)
{
    focusByKeyboard = isKeyboardFocus(event->reason(), focusByKeyboard);
    QAbstractItemView::focusInEvent(event);
    // Queued: Qt reports the focus of the grid itself after this event.
    QMetaObject::invokeMethod(this, &HistoryGrid::notifyFocus, Qt::QueuedConnection);
}

void HistoryGrid::notifyFocus()
{
    if (hasFocus() && currentIndex().isValid()) {
        HistoryGridAccessible::notifyFocus(*this, currentIndex().row());
    }
}

void HistoryGrid::paintEvent(QPaintEvent *event)
{
    const int offset = verticalOffset();
    const QRect exposed = event->rect();
    const auto [first, end] = tiles.positionsIn(exposed.top() + offset, exposed.bottom() + 1 + offset);
    QPainter painter{viewport()};
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    for (int position = first; position < end; ++position) {
        option.rect = tiles.tile(position).translated(0, -offset);
        const bool focused = hasFocus() && focusByKeyboard && currentIndex().row() == position;
        option.state.setFlag(QStyle::State_HasFocus, focused);
        itemDelegate()->paint(&painter, option, records.index(position));
    }
    // Files may have changed, so every drawing looks for pictures to load.
    filled = false;
    if (!fillTimer.isActive()) {
        fillTimer.start(0ms);
    }
}

std::pair<int, int> HistoryGrid::positionsInSight() const
{
    return tiles.positionsIn(verticalOffset(), verticalOffset() + viewport()->height());
}

ThumbnailCache::Square HistoryGrid::square() const
{
    return {tiles.tileWidth(), HistoryThumbnail::cornerRadius, devicePixelRatioF()};
}

/// The picture that was begun before any other, otherwise the one nearest to the middle; -1 when all are
/// there.
int HistoryGrid::nextToRead(int first, int end)
{
    const QPoint middle{viewport()->width() / 2, verticalOffset() + viewport()->height() / 2};
    int nearest = -1;
    int distance = 0;
    for (int position = first; position < end; ++position) {
        const QString &path = records.record(position).imagePath;
        const auto state = pictures.find(path, square()).state;
        if (state != ThumbnailCache::State::unknown && state != ThumbnailCache::State::outdated) {
            continue;
        }
        if (path == reader.begunPath()) {
            return position;
        }
        const int away = (tiles.tile(position).center() - middle).manhattanLength();
        if (nearest < 0 || away < distance) {
            nearest = position;
            distance = away;
        }
    }
    return nearest;
}

void HistoryGrid::fillNext()
{
    const auto [first, end] = positionsInSight();
    const int next = nextToRead(first, end);
    if (next < 0) {
        reader.drop();
        filled = true;
        return;
    }
    const QString path = records.record(next).imagePath;
    if (reader.advance(path, square(), QDeadlineTimer{slice, Qt::PreciseTimer})) {
        QSet<QString> inSight;
        for (int position = first; position < end; ++position) {
            const QString &shown = records.record(position).imagePath;
            inSight.insert(shown);
            if (shown == path) {
                viewport()->update(visualRect(records.index(position)));
            }
        }
        pictures.trim(inSight);
    }
    fillTimer.start(0ms);
}

} // namespace quilmora
