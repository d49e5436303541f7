#include "ui/theme/SymbolDrawing.h"

#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>
#include <utility>

namespace quilmora {
namespace {

constexpr int gridUnits = 24;
constexpr double gridMiddle = gridUnits / 2.0;
constexpr double usualStroke = 1.7; ///< As the drawings have it.

/// Passes the painted paths to a function.
class PathEngine final : public QPaintEngine
{
public:
    using Receiver = std::function<void(const QPainterPath &path, double strokeShare)>;

    explicit PathEngine(Receiver pathReceiver)
        : QPaintEngine{AllFeatures},
          m_receiver{std::move(pathReceiver)}
    {
    }

    bool begin(QPaintDevice * /*device*/) override { return true; }
    bool end() override { return true; }
    void updateState(const QPaintEngineState & /*state*/) override {}
    void drawPixmap(const QRectF & /*to*/, const QPixmap & /*pixmap*/, const QRectF & /*from*/) override {}
    void drawPath(const QPainterPath &path) override
    {
        const QPainterPath onGrid = state->transform().map(path);
        if (state->brush().style() != Qt::NoBrush) {
            m_receiver(onGrid, 0);
        }
        if (state->pen().style() != Qt::NoPen) {
            m_receiver(onGrid, state->pen().widthF() * state->transform().m11() / usualStroke);
        }
    }
    Type type() const override { return User; }

private:
    const Receiver m_receiver;
};

class PathDevice final : public QPaintDevice
{
public:
    explicit PathDevice(PathEngine::Receiver receiver) : m_engine{std::move(receiver)} {}

    QPaintEngine *paintEngine() const override { return &m_engine; }

protected:
    int metric(PaintDeviceMetric metric) const override
    {
        switch (metric) {
        case PdmWidth:
        case PdmHeight:
            return gridUnits;
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return static_cast<int>(devicePixelRatioFScale());
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY:
            return 96;
        default:
            return QPaintDevice::metric(metric);
        }
    }

private:
    mutable PathEngine m_engine;
};

bool isZero(double value) { return std::abs(value) < 1e-3; }

} // namespace

PixelFitter::PixelFitter(double middle, double target, double scale)
    : m_middle{middle},
      m_target{target},
      m_scale{scale}
{
}

void PixelFitter::align(double place, double width)
{
    constexpr double leastDistance = 0.5;
    const auto next = m_aligned.lower_bound(place);
    const bool isCloseToNext = next != m_aligned.end() && (next->first - place) * m_scale < leastDistance;
    if (isCloseToNext ||
        (next != m_aligned.begin() && (place - std::prev(next)->first) * m_scale < leastDistance)) {
        return;
    }
    const double distance = std::abs(place - m_middle) * m_scale;
    const double start = std::round(m_target - distance - width / 2);
    const double fitted = distance < leastDistance / 2 ? 0 : m_target - start - width / 2;
    m_aligned[place] = place < m_middle ? m_target - fitted : m_target + fitted;
}

double PixelFitter::pixelAt(double place) const
{
    if (m_aligned.empty()) {
        return m_target + (place - m_middle) * m_scale;
    }
    const auto next = m_aligned.lower_bound(place);
    if (next == m_aligned.begin() || next == m_aligned.end()) {
        const auto nearest = next == m_aligned.begin() ? next : std::prev(next);
        return nearest->second + (place - nearest->first) * m_scale;
    }
    const auto previous = std::prev(next);
    return std::lerp(previous->second, next->second,
                     (place - previous->first) / (next->first - previous->first));
}

bool SymbolDrawing::Shape::isSmall() const
{
    constexpr double widest = 5;
    return !isStroke() && path.boundingRect().width() < widest;
}

SymbolDrawing::SymbolDrawing(const QByteArray &svg)
{
    PathDevice device{[this](const QPainterPath &path, double strokeShare) {
        m_shapes.append({path, strokeShare});
        if (m_shapes.constLast().isSmall()) {
            m_hasSmallInMiddle |= isZero(path.boundingRect().center().x() - gridMiddle);
        } else {
            markAlong(m_shapes.constLast());
        }
    }};
    QPainter painter{&device};
    QSvgRenderer renderer{svg};
    renderer.render(&painter, QRectF{0, 0, gridUnits, gridUnits});
    // PixelFitter uses the first of several marks at one place.
    const auto weight = [](const Mark &mark) {
        return (mark.isStroke ? 2 : 0) + (mark.isStraight ? 1 : 0);
    };
    for (QList<Mark> *marks : {&m_columns, &m_rows}) {
        std::stable_sort(marks->begin(), marks->end(), [&](const Mark &first, const Mark &second) {
            return weight(first) > weight(second);
        });
    }
}

void SymbolDrawing::markAlong(const Shape &shape)
{
    const QPainterPath &path = shape.path;
    for (int i = 1; i < path.elementCount(); ++i) {
        const QPointF before = path.elementAt(i - 1);
        const QPointF here = path.elementAt(i);
        if (path.elementAt(i).isLineTo()) {
            mark(here, here - before, shape, true);
        } else if (path.elementAt(i).isCurveTo()) {
            const QPointF end = path.elementAt(i + 2);
            mark(before, here - before, shape, false);
            mark(end, end - path.elementAt(i + 1), shape, false);
        }
    }
}

void SymbolDrawing::mark(QPointF place, QPointF direction, const Shape &shape, bool isStraight)
{
    constexpr double shortestStraight = 2;
    const bool isLong = isStraight && direction.manhattanLength() > shortestStraight;
    if (isZero(direction.x()) && !isZero(direction.y())) {
        m_columns.append({place.x(), shape.isStroke(), isLong});
    } else if (isZero(direction.y()) && !isZero(direction.x())) {
        m_rows.append({place.y(), shape.isStroke(), isLong});
    }
}

void SymbolDrawing::align(PixelFitter &fit, const QList<Mark> &marks, double strokeWidth)
{
    for (const Mark &mark : marks) {
        fit.align(mark.place, mark.isStroke ? strokeWidth : 0);
    }
}

QPainterPath SymbolDrawing::fitted(const Shape &shape, const PixelFitter &across,
                                   const PixelFitter &down) const
{
    if (shape.isSmall()) {
        return fittedSmall(shape.path, across, down);
    }
    QPainterPath stretched = shape.path;
    for (int i = 0; i < stretched.elementCount(); ++i) {
        const QPointF place = stretched.elementAt(i);
        stretched.setElementPositionAt(i, across.pixelAt(place.x()), down.pixelAt(place.y()));
    }
    return stretched;
}

/// Fitted like the others, dots would not be round, and equal shapes not equal.
QPainterPath SymbolDrawing::fittedSmall(const QPainterPath &path, const PixelFitter &across,
                                        const PixelFitter &down) const
{
    const auto whole = [](double pixels) {
        return std::max(1.0, std::round(pixels));
    };
    const QRectF bounds = path.boundingRect();
    const double usualWidth = across.pixelsIn(bounds.width());
    // Symmetric about the middle.
    const double middlePixel = across.pixelAt(gridMiddle);
    const double width = m_hasSmallInMiddle
                             ? std::max(1.0, 2 * (middlePixel - std::round(middlePixel - usualWidth / 2)))
                             : whole(usualWidth);
    const bool isSquare = isZero(bounds.width() - bounds.height());
    const double height = isSquare ? width : whole(down.pixelsIn(bounds.height()));
    const QPointF center{across.pixelAt(bounds.center().x()), down.pixelAt(bounds.center().y())};
    QTransform toPlace =
        QTransform::fromTranslate(std::round(center.x() - width / 2), std::round(center.y() - height / 2));
    toPlace.scale(width / bounds.width(), height / bounds.height());
    toPlace.translate(-bounds.left(), -bounds.top());
    return toPlace.map(path);
}

void SymbolDrawing::paint(QPainter &painter, int side, double strokeWidth, const QColor &color,
                          bool isMoved) const
{
    const double scale = side * 1.0 / gridUnits;
    const auto isStem = [](const Mark &mark) {
        return mark.isStroke && mark.isStraight;
    };
    const bool hasStems = std::any_of(m_columns.begin(), m_columns.end(), isStem) ||
                          std::any_of(m_rows.begin(), m_rows.end(), isStem);
    // Thinner curves and diagonals would be grey.
    constexpr double thinnestCurve = 1.25;
    const double width = hasStems ? std::max(1.0, std::round(strokeWidth * scale))
                                  : std::max(thinnestCurve, strokeWidth * scale);
    const double usualMiddle = (side + (isMoved ? 1 : 0)) / 2.0;
    const bool hasMiddleStem = std::any_of(m_columns.begin(), m_columns.end(), [&](const Mark &mark) {
        return isStem(mark) && isZero(mark.place - gridMiddle);
    });
    // A stroke in the middle determines its position.
    PixelFitter across{gridMiddle,
                       hasMiddleStem ? std::floor(usualMiddle - width / 2) + width / 2 : usualMiddle, scale};
    PixelFitter down{gridMiddle, usualMiddle, scale};
    align(across, m_columns, width);
    align(down, m_rows, width);
    for (const Shape &shape : m_shapes) {
        const QPainterPath path = fitted(shape, across, down);
        if (shape.isStroke()) {
            painter.strokePath(
                path, QPen{color, shape.strokeShare * width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin});
        } else {
            painter.fillPath(path, color);
        }
    }
}

} // namespace quilmora
