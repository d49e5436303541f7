#include "screens/history/HistoryGrid.h"

#include "screens/history/HistoryGridAccessible.h"
#include "screens/history/HistoryThumbnail.h"
#include "ui/style/FocusRing.h"

#include <QKeyEvent>
#include <QPainter>
#include <QResizeEvent>
#include <QScrollBar>

#include <algorithm>
#include <chrono>
#include <cstdlib>

using namespace std::chrono_literals;

namespace quilmora {
namespace {

/// Delays reading after scrolling, which it would disturb.
constexpr auto delayAfterScrolling = 60ms;
/// Maximum time without event processing.
constexpr auto slice = 4ms;
constexpr int scrollStep = 40;

} // namespace

HistoryGrid::HistoryGrid(HistoryModel &model, ThumbnailCache &thumbnails, QWidget *parent)
    : QAbstractItemView{parent},
      m_records{model},
      m_thumbnails{thumbnails},
      m_reader{thumbnails}
{
    historyGridAccessible::install();
    setModel(&m_records);
    setItemDelegate(new HistoryThumbnail{m_records, m_thumbnails, this});
    setFrameShape(QFrame::NoFrame);
    setSelectionMode(NoSelection);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    // Shows the background of the window.
    viewport()->setAutoFillBackground(false);
    m_fillTimer.setSingleShot(true);
    connect(&m_fillTimer, &QTimer::timeout, this, &HistoryGrid::fillNext);
    connect(this, &HistoryGrid::clicked, this,
            [this](const QModelIndex &index) { Q_EMIT opened(index.row()); });
}

int HistoryGrid::verticalOffset() const { return verticalScrollBar()->value(); }

QRect HistoryGrid::visualRect(const QModelIndex &index) const
{
    return index.isValid() ? m_tiles.tile(index.row()).translated(0, -verticalOffset()) : QRect{};
}

QModelIndex HistoryGrid::indexAt(const QPoint &point) const
{
    const int position = m_tiles.positionAt(point + QPoint{0, verticalOffset()});
    return position < 0 ? QModelIndex{} : m_records.index(position);
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
    const int last = m_records.rowCount() - 1;
    if (last < 0) {
        return {};
    }
    if (!currentIndex().isValid()) {
        return m_records.index(visiblePositions().first);
    }
    const int current = currentIndex().row();
    const int page = std::max(1, viewport()->height() / m_tiles.rowHeight(current / GridGeometry::columns)) *
                     GridGeometry::columns;
    const auto upBy = [&](int step) {
        return current < step ? current % GridGeometry::columns : current - step;
    };
    switch (action) {
    case MoveLeft:
    case MovePrevious:
        return m_records.index(std::max(0, current - 1));
    case MoveRight:
    case MoveNext:
        return m_records.index(std::min(last, current + 1));
    case MoveUp:
        return m_records.index(upBy(GridGeometry::columns));
    case MoveDown:
        return m_records.index(std::min(last, current + GridGeometry::columns));
    case MovePageUp:
        return m_records.index(upBy(page));
    case MovePageDown:
        return m_records.index(std::min(last, current + page));
    case MoveHome:
        return m_records.index(0);
    case MoveEnd:
        return m_records.index(last);
    }
    return currentIndex();
}

// Tiles are opened, not selected.
void HistoryGrid::setSelection(const QRect & /*area*/, QItemSelectionModel::SelectionFlags /*flags*/) {}

QRegion HistoryGrid::visualRegionForSelection(const QItemSelection & /*selection*/) const { return {}; }

void HistoryGrid::updateGeometries()
{
    QAbstractItemView::updateGeometries();
    const int width = viewport()->width();
    m_tiles =
        GridGeometry{width, HistoryThumbnail::textHeights(m_records.all(), GridGeometry::tileWidth(width))};
    const int height = viewport()->height();
    verticalScrollBar()->setRange(0, std::max(0, m_tiles.contentHeight() - height));
    verticalScrollBar()->setPageStep(height);
    verticalScrollBar()->setSingleStep(scrollStep);
}

void HistoryGrid::scrollContentsBy(int /*dx*/, int /*dy*/)
{
    viewport()->update();
    if (m_fillTimer.isActive()) {
        m_fillTimer.start(delayAfterScrolling);
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
    // The same tiles stay visible.
    const double rows = m_tiles.rowsAbove(verticalOffset());
    QAbstractItemView::resizeEvent(event);
    verticalScrollBar()->setValue(m_tiles.heightOf(rows));
}

void HistoryGrid::keyPressEvent(QKeyEvent *event)
{
    m_focusByKeyboard = true;
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
    m_focusByKeyboard = showsFocusRing(event->reason(), m_focusByKeyboard);
    QAbstractItemView::focusInEvent(event);
    // Queued: Qt reports the focus of the grid itself after this event.
    QMetaObject::invokeMethod(this, &HistoryGrid::notifyFocus, Qt::QueuedConnection);
}

void HistoryGrid::notifyFocus()
{
    if (hasFocus() && currentIndex().isValid()) {
        historyGridAccessible::notifyFocus(*this, currentIndex().row());
    }
}

void HistoryGrid::paintEvent(QPaintEvent *event)
{
    const int offset = verticalOffset();
    const QRect exposed = event->rect();
    const auto [first, end] = m_tiles.positionsIn(exposed.top() + offset, exposed.bottom() + 1 + offset);
    QPainter painter{viewport()};
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    for (int position = first; position < end; ++position) {
        option.rect = m_tiles.tile(position).translated(0, -offset);
        const bool focused = hasFocus() && m_focusByKeyboard && currentIndex().row() == position;
        option.state.setFlag(QStyle::State_HasFocus, focused);
        itemDelegate()->paint(&painter, option, m_records.index(position));
    }
    // Files may have changed since the last painting.
    m_filled = false;
    if (!m_fillTimer.isActive()) {
        m_fillTimer.start(0ms);
    }
}

std::pair<int, int> HistoryGrid::visiblePositions() const
{
    return m_tiles.positionsIn(verticalOffset(), verticalOffset() + viewport()->height());
}

ThumbnailCache::Square HistoryGrid::square() const
{
    return {m_tiles.tileWidth(), HistoryThumbnail::cornerRadius, devicePixelRatioF()};
}

/// The picture that is partly read, else the one nearest to the center; -1 when all are ready.
int HistoryGrid::nextToRead(int first, int end)
{
    const QPoint middle{viewport()->width() / 2, verticalOffset() + viewport()->height() / 2};
    int nearest = -1;
    int distance = 0;
    for (int position = first; position < end; ++position) {
        const QString &path = m_records.record(position).imagePath;
        const auto state = m_thumbnails.find(path, square()).state;
        if (state != ThumbnailCache::State::unknown && state != ThumbnailCache::State::outdated) {
            continue;
        }
        if (path == m_reader.currentPath()) {
            return position;
        }
        const int away = (m_tiles.tile(position).center() - middle).manhattanLength();
        if (nearest < 0 || away < distance) {
            nearest = position;
            distance = away;
        }
    }
    return nearest;
}

void HistoryGrid::fillNext()
{
    const auto [first, end] = visiblePositions();
    const int next = nextToRead(first, end);
    if (next < 0) {
        m_reader.drop();
        m_filled = true;
        return;
    }
    const QString path = m_records.record(next).imagePath;
    if (m_reader.advance(path, square(), QDeadlineTimer{slice, Qt::PreciseTimer})) {
        QSet<QString> visible;
        for (int position = first; position < end; ++position) {
            const QString &shown = m_records.record(position).imagePath;
            visible.insert(shown);
            if (shown == path) {
                viewport()->update(visualRect(m_records.index(position)));
            }
        }
        m_thumbnails.trim(visible);
    }
    m_fillTimer.start(0ms);
}

} // namespace quilmora
