#include "local_service/scenes/LightEffects.h"

#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

#include <numbers>

namespace quilmora::lightEffects
{
namespace
{

class AddingLight final
{
public:
    explicit AddingLight(QPainter &painter) : m_painter{painter}
    {
        m_painter.save();
        m_painter.setPen(Qt::NoPen);
        m_painter.setCompositionMode(QPainter::CompositionMode_Plus);
    }
    ~AddingLight() { m_painter.restore(); }
    Q_DISABLE_COPY_MOVE(AddingLight)

private:
    QPainter &m_painter;
};

QPointF somewhere(SceneStage &stage, const QRectF &area)
{
    const double x = stage.between(area.left(), area.right());
    return {x, stage.between(area.top(), area.bottom())};
}

QPainterPath star(QPointF centre, double length)
{
    const double waist = length * 0.07;
    QPainterPath path;
    path.moveTo(centre + QPointF{0, -length});
    for (const QPointF tip : {QPointF{1, 0}, QPointF{0, 1}, QPointF{-1, 0}, QPointF{0, -1}}) {
        const QPointF before{tip.y(), -tip.x()};
        path.quadTo(centre + (tip + before) * waist, centre + tip * length);
    }
    return path;
}

} // namespace

void glow(QPainter &painter, QPointF centre, double radius, const QColor &colour, double strength)
{
    const AddingLight light{painter};
    QRadialGradient gradient{centre, radius};
    gradient.setColorAt(0, faded(colour, strength));
    gradient.setColorAt(0.25, faded(colour, strength * 0.55));
    gradient.setColorAt(0.55, faded(colour, strength * 0.18));
    gradient.setColorAt(1, faded(colour, 0));
    painter.setBrush(gradient);
    painter.drawEllipse(centre, radius, radius);
}

void rays(SceneStage &stage, QPointF centre, double radius, int count, const QColor &colour, double strength)
{
    const AddingLight light{stage.painter};
    QRadialGradient gradient{centre, radius};
    gradient.setColorAt(0, faded(colour, strength));
    gradient.setColorAt(0.5, faded(colour, strength * 0.45));
    gradient.setColorAt(1, faded(colour, 0));
    stage.painter.setBrush(gradient);
    const double step = 2 * std::numbers::pi / count;
    for (int i = 0; i < count; ++i) {
        const double angle = step * (i + stage.between(-0.2, 0.2));
        const double half = step * stage.between(0.10, 0.30);
        QPainterPath wedge{centre};
        wedge.lineTo(centre + radius * QPointF{std::cos(angle - half), std::sin(angle - half)});
        wedge.lineTo(centre + radius * QPointF{std::cos(angle + half), std::sin(angle + half)});
        wedge.closeSubpath();
        stage.painter.drawPath(wedge);
    }
}

void bokeh(SceneStage &stage, const QRectF &area, int count, double smallest, double largest,
           const QColor &colour, double strength)
{
    const AddingLight light{stage.painter};
    for (int i = 0; i < count; ++i) {
        const QPointF centre = somewhere(stage, area);
        const double radius = stage.between(smallest, largest) / 2;
        const double own = strength * stage.between(0.35, 1);
        QRadialGradient gradient{centre, radius};
        gradient.setColorAt(0, faded(colour, own * 0.55));
        gradient.setColorAt(0.82, faded(colour, own * 0.75));
        gradient.setColorAt(0.93, faded(colour.lighter(130), own));
        gradient.setColorAt(1, faded(colour, 0));
        stage.painter.setBrush(gradient);
        stage.painter.drawEllipse(centre, radius, radius);
    }
}

void sparkles(SceneStage &stage, const QRectF &area, int count, double largest, const QColor &colour)
{
    for (int i = 0; i < count; ++i) {
        const QPointF centre = somewhere(stage, area);
        const double length = largest * stage.between(0.3, 1);
        glow(stage.painter, centre, length * 0.8, colour, 0.5);
        const AddingLight light{stage.painter};
        stage.painter.setBrush(faded(mixed(colour, Qt::white, 0.6), 0.95));
        stage.painter.drawPath(star(centre, length));
    }
}

void dust(SceneStage &stage, const QRectF &area, int count, double largest, const QColor &colour)
{
    const AddingLight light{stage.painter};
    for (int i = 0; i < count; ++i) {
        const QPointF centre = somewhere(stage, area);
        // Most are small.
        const double share = stage.between(0, 1);
        const double radius = largest / 2 * (0.15 + 0.85 * share * share * share);
        stage.painter.setBrush(faded(colour, stage.between(0.25, 0.95)));
        stage.painter.drawEllipse(centre, radius, radius);
    }
}

} // namespace quilmora::lightEffects
