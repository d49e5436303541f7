#pragma once

#include <QLayout>
#include <QList>
#include <QPointF>
#include <QRectF>
#include <QSizeF>

#include <limits>
#include <memory>
#include <vector>

namespace quilmora {

/// Arranges rectangles from left to right in rows. Lengths in device-independent pixels.
struct FlowLayout {
    double spacing = 8;     ///< Gap after each child in a row.
    double lineSpacing = 8; ///< Gap between two rows.

    /// No width proposed.
    static constexpr double unlimited = std::numeric_limits<double>::infinity();

    /// The size needed for children of the ideal sizes `children` in a width of `proposedWidth`. Without a
    /// limit the width includes one trailing gap; with one it is the limit itself.
    QSizeF sizeThatFits(double proposedWidth, const QList<QSizeF> &children) const;

    /// The top left corner of each child inside `bounds`. A child wider than `bounds` goes to the start of a
    /// new row, even below an empty one, and hangs over to the right.
    QList<QPointF> placeSubviews(const QRectF &bounds, const QList<QSizeF> &children) const;
};

/// A QLayout that arranges its items by a FlowLayout, each at its size hint.
class FlowLayoutHost final : public QLayout
{
    Q_OBJECT

public:
    explicit FlowLayoutHost(QWidget *parent, FlowLayout core = {});

    void addItem(QLayoutItem *item) override;
    QLayoutItem *itemAt(int index) const override;
    QLayoutItem *takeAt(int index) override;
    int count() const override;

    QSize sizeHint() const override;
    QSize minimumSize() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    Qt::Orientations expandingDirections() const override { return {}; }
    void setGeometry(const QRect &bounds) override;

private:
    QList<QSizeF> idealSizes() const;

    const FlowLayout m_core;
    std::vector<std::unique_ptr<QLayoutItem>> m_items;
};

} // namespace quilmora
