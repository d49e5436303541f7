#pragma once

#include <QPointF>
#include <QRectF>
#include <QSize>

namespace quilmora
{

/// Where things stand on a cover. Lengths are pixels.
struct CoverLayout {
    QRectF title;          ///< The room for the title; empty without one.
    QPointF focus;         ///< Where the light comes from.
    double radius = 0;     ///< Of the presenter's circle around `focus`; 0 without a presenter.
    QPointF badge;         ///< The middle of the badge with the presenter's expression.
    double unit = 0;       ///< A thousandth of the shorter side.
    int mostLines = 3;     ///< Of the title.
    bool centred = true;   ///< Whether the title's lines are centred or begin on the left.
    bool sideways = false; ///< Whether the title stands beside the presenter or above.

    static CoverLayout of(QSize size, bool hasTitle, bool hasPresenter);
};

} // namespace quilmora
