#include "screens/generate/FlowLayoutHost.h"

#include <cmath>

namespace quilmora {

FlowLayoutHost::FlowLayoutHost(QWidget *parent, FlowLayout layout) : QLayout{parent}, m_core{layout}
{
    setContentsMargins(0, 0, 0, 0);
}

void FlowLayoutHost::addItem(QLayoutItem *item)
{
    m_items.emplace_back(item);
}

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

int FlowLayoutHost::count() const
{
    return static_cast<int>(m_items.size());
}

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
