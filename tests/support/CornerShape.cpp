#include "support/CornerShape.h"

#include <QWidget>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace quilmora::test {
namespace {

/// Pixels per unit at which a widget is measured, and the greatest part of it.
constexpr double fineRatio = 16;
constexpr QSize greatestPart{64, 64};

QImage fineCapture(QWidget *widget, const QRect &piece)
{
    const QRect whole = piece.isEmpty() ? widget->rect() : piece;
    const QRect part{whole.topLeft(), QSize{whole.width() / 2, whole.height()}.boundedTo(greatestPart)};
    QImage picture{part.size() * fineRatio, QImage::Format_ARGB32};
    picture.setDevicePixelRatio(fineRatio);
    picture.fill(Qt::transparent);
    widget->render(&picture, {}, QRegion{part}, QWidget::DrawChildren);
    return picture;
}

/// How far below the upper edge a circle in the corner begins, on the average between two distances from its
/// left edge.
double circleBelow(double radius, double from, double to)
{
    constexpr int steps = 32;
    double sum = 0;
    for (int i = 0; i < steps; ++i) {
        const double along = from + (to - from) * (i + 0.5) / steps;
        const double rest = std::max(0.0, radius - along);
        sum += radius - std::sqrt(radius * radius - rest * rest);
    }
    return sum / steps;
}

/// How much a difference across a circle's outline counts downwards: near the tip the outline is steep.
double acrossOutline(double radius, double from)
{
    return std::hypot(1, circleBelow(radius, from, from) - circleBelow(radius, from + 1, from + 1));
}

QString difference(double from, double to, double seen, double expected)
{
    return u"between %1 and %2 it begins %3 below, not %4"_s.arg(from).arg(to).arg(seen).arg(expected);
}

} // namespace

CornerShape::CornerShape(QWidget *widget, const QRect &piece)
    : CornerShape{fineCapture(widget, piece), fineRatio}
{
}

CornerShape::CornerShape(const QImage &leftHalf, double devicePixelRatio)
    : m_coverage{leftHalf.convertToFormat(QImage::Format_Alpha8)},
      m_ratio{devicePixelRatio}
{
    // A shape or its border may be translucent: what the upper edge has far from the corner counts as whole.
    const int whole = std::max(1, qAlpha(leftHalf.pixel(leftHalf.width() - 1, 0)));
    for (int y = 0; y < m_coverage.height(); ++y) {
        uchar *line = m_coverage.scanLine(y);
        std::transform(line, line + m_coverage.width(), line, [whole](uchar alpha) {
            return static_cast<uchar>(std::min(255, alpha * 255 / whole));
        });
    }
}

double CornerShape::below(double from, double to) const
{
    const int first = static_cast<int>(std::floor(from * m_ratio));
    const int last = std::max(first, static_cast<int>(std::ceil(to * m_ratio)) - 1);
    double missing = 0;
    for (int x = first; x <= last; ++x) {
        // Down to the middle, so that the lower corner does not count.
        for (int y = 0; y < m_coverage.height(); ++y) {
            const int inside = m_coverage.constScanLine(y)[x];
            missing += 1 - inside / 255.0;
            if (inside == 255) {
                break;
            }
        }
    }
    return missing / (last - first + 1) / m_ratio;
}

QString CornerShape::differenceFromCircle(double radius) const
{
    // The very tip is left out: there a pixel more or less makes a great difference.
    for (int from = 1; from <= radius + 1; ++from) {
        const double seen = below(from, from + 1);
        const double expected = circleBelow(radius, from, from + 1);
        if (std::abs(seen - expected) > 0.11 * acrossOutline(radius, from)) {
            return difference(from, from + 1, seen, expected);
        }
    }
    return {};
}

QString CornerShape::differenceFromContinuous(double radius) const
{
    for (int from = 1; from < radius; ++from) {
        const double seen = below(from, from + 1);
        const double expected = circleBelow(radius, from, from + 1);
        // On the diagonal it is where the circle is, and elsewhere a little inside.
        const bool onDiagonal = from >= 0.15 * radius && from + 1 <= 0.45 * radius;
        const double inside = onDiagonal ? 0 : 0.022 * radius;
        const double across = acrossOutline(radius, from);
        if (seen < expected - 0.11 * across || seen > expected + (0.11 + inside) * across) {
            return difference(from, from + 1, seen, expected);
        }
    }
    // A circle has ended here, and a continuous corner has not.
    const double seen = below(radius, 1.2 * radius);
    if (seen < 0.002 * radius || seen > 0.02 * radius) {
        return difference(radius, 1.2 * radius, seen, 0.006 * radius);
    }
    const double beyond = below(1.7 * radius, 1.9 * radius);
    return beyond < 0.001 * radius ? QString{} : difference(1.7 * radius, 1.9 * radius, beyond, 0);
}

} // namespace quilmora::test
