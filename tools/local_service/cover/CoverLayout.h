#pragma once

#include <QPointF>
#include <QRectF>
#include <QSize>

namespace quilmora::localservice {

/// Where things stand on a cover. Lengths are pixels.
struct CoverLayout {
    double unit = 0;     ///< A thousandth of the shorter side.
    QRectF title;        ///< The room for the title; empty without one.
    int mostLines = 4;   ///< Of the title.
    bool beside = false; ///< Whether the title stands beside the presenter, with its lines begun on the left.
    QPointF focus;       ///< Where the light comes from.
    double radius = 0;   ///< Of the presenter's circle around `focus`; 0 without a presenter.

    static CoverLayout of(QSize size, bool hasTitle, bool hasPresenter);
};

} // namespace quilmora::localservice
