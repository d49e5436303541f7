#include "screens/generate/FlowLayout.h"

#include <cmath>

namespace quilmora {
namespace {

/// The larger of the two; `current` when the comparison has no answer.
double larger(double current, double other) { return other > current ? other : current; }

} // namespace

QSizeF FlowLayout::sizeThatFits(double proposedWidth, const QList<QSizeF> &children) const
{
    double x = 0;
    double y = 0;
    double rowHeight = 0;
    for (const QSizeF &child : children) {
        if (x + child.width() > proposedWidth) {
            y += rowHeight + lineSpacing;
            x = child.width() + spacing;
            rowHeight = child.height();
        } else {
            x += child.width() + spacing;
            rowHeight = larger(rowHeight, child.height());
        }
    }
    return {std::isfinite(proposedWidth) ? proposedWidth : x, y + rowHeight};
}

QList<QPointF> FlowLayout::placeSubviews(const QRectF &bounds, const QList<QSizeF> &children) const
{
    QList<QPointF> corners;
    corners.reserve(children.size());
    double x = bounds.left();
    double y = bounds.top();
    double rowHeight = 0;
    for (const QSizeF &child : children) {
        if (x + child.width() > bounds.left() + bounds.width()) {
            x = bounds.left();
            y += rowHeight + lineSpacing;
            rowHeight = 0;
        }
        corners.append({x, y});
        x += child.width() + spacing;
        rowHeight = larger(rowHeight, child.height());
    }
    return corners;
}

FlowLayoutHost::FlowLayoutHost(QWidget *parent, FlowLayout layout) : QLayout{parent}, m_core{layout}
{
    setContentsMargins(0, 0, 0, 0);
}

void FlowLayoutHost::addItem(QLayoutItem *item) { m_items.emplace_back(item); }

QLayoutItem *FlowLayoutHost::itemAt(int index) const
{
    return index >= 0 && index < count() ? m_items[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem *FlowLayoutHost::takeAt(int index)
{
    if (index < 0 || index >= count()) {
        return nullptr;
    }
    const auto place = m_items.begin() + index;
    QLayoutItem *item = place->release();
    m_items.erase(place);
    return item;
}

int FlowLayoutHost::count() const { return static_cast<int>(m_items.size()); }

QList<QSizeF> FlowLayoutHost::idealSizes() const
{
    QList<QSizeF> sizes;
    for (const auto &item : m_items) {
        sizes.append(item->sizeHint());
    }
    return sizes;
}

QSize FlowLayoutHost::sizeHint() const
{
    const QSizeF size = m_core.sizeThatFits(FlowLayout::unlimited, idealSizes());
    return {static_cast<int>(std::ceil(size.width())), static_cast<int>(std::ceil(size.height()))};
}

QSize FlowLayoutHost::minimumSize() const
{
    QSize widest;
    for (const auto &item : m_items) {
        widest = widest.expandedTo(item->sizeHint());
    }
    return widest;
}

int FlowLayoutHost::heightForWidth(int width) const
{
    return static_cast<int>(std::ceil(m_core.sizeThatFits(width, idealSizes()).height()));
}

void FlowLayoutHost::setGeometry(const QRect &bounds)
{
    QLayout::setGeometry(bounds);
    const QList<QPointF> corners = m_core.placeSubviews(bounds, idealSizes());
    for (std::size_t i = 0; i < m_items.size(); ++i) {
        m_items[i]->setGeometry({corners[static_cast<qsizetype>(i)].toPoint(), m_items[i]->sizeHint()});
    }
}

} // namespace quilmora
