#include "PaintLog.h"

#include "support/SilentEngine.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QWidget>

#include <cmath>

namespace quilmora::test {
namespace {

/// Sides shorter than this are part of a corner or of a drawing.
constexpr double shortestSide = 8;

/// Draws nothing and notes what it is asked to draw.
class RecordingEngine final : public SilentEngine
{
public:
    explicit RecordingEngine(PaintLog &target) : m_record{target} {}

    void drawPixmap(const QRectF &to, const QPixmap & /*pixmap*/, const QRectF &from) override
    {
        m_record.pictures.append({state->transform().mapRect(to), from.size()});
    }
    void drawImage(const QRectF &to, const QImage & /*image*/, const QRectF &from,
                   Qt::ImageConversionFlags /*flags*/) override
    {
        m_record.pictures.append({state->transform().mapRect(to), from.size()});
    }
    void drawTextItem(const QPointF &place, const QTextItem &item) override
    {
        const QRectF ink = QFontMetricsF{item.font()}.tightBoundingRect(item.text()).translated(place);
        m_record.texts.append({item.text(), ink, state->transform()});
    }
    void drawPath(const QPainterPath &path) override;
    void drawPolygon(const QPointF *points, int count, PolygonDrawMode /*mode*/) override;

private:
    void noteSide(QPointF from, QPointF to, const QRectF &shape);

    PaintLog &m_record;
};

void RecordingEngine::drawPolygon(const QPointF *points, int count, PolygonDrawMode /*mode*/)
{
    QPainterPath path;
    path.addPolygon(QPolygonF{QList<QPointF>{points, points + count}});
    drawPath(path);
}

void RecordingEngine::drawPath(const QPainterPath &path)
{
    if (state->brush().style() == Qt::TexturePattern) {
        ++m_record.texturedShapes;
    }
    if (!state->renderHints().testFlag(QPainter::Antialiasing)) {
        return;
    }
    const QPainterPath onScreen = state->transform().map(path);
    const QRectF shape = onScreen.boundingRect();
    for (int i = 1; i < onScreen.elementCount(); ++i) {
        if (onScreen.elementAt(i).type == QPainterPath::LineToElement) {
            noteSide(onScreen.elementAt(i - 1), onScreen.elementAt(i), shape);
        }
    }
}

void RecordingEngine::noteSide(QPointF from, QPointF to, const QRectF &shape)
{
    const QPointF along = to - from;
    const bool horizontal = std::abs(along.y()) < 1e-6 && std::abs(along.x()) >= shortestSide;
    const bool vertical = std::abs(along.x()) < 1e-6 && std::abs(along.y()) >= shortestSide;
    if (!horizontal && !vertical) {
        return;
    }
    const double place = horizontal ? from.y() : from.x();
    const double middle = horizontal ? shape.center().y() : shape.center().x();
    const bool isLine = state->pen().style() != Qt::NoPen;
    const double half = isLine ? state->pen().widthF() * state->transform().m11() / 2 : 0;
    const double outwards = place < middle ? -half : half;
    m_record.edges.append({place + outwards, place - outwards, shape, vertical});
}

} // namespace

PaintLog PaintLog::of(QWidget *widget)
{
    PaintLog record;
    RecordingEngine engine{record};
    SilentDevice device{*widget->window(), engine, widget->devicePixelRatioF()};
    const QPoint place = widget->mapTo(widget->window(), QPoint{});
    const double ratio = widget->devicePixelRatioF();
    // Rounded as Qt does.
    const QPointF last{place.x() + widget->width() * 1.0, place.y() + widget->height() * 1.0};
    record.bounds = {(QPointF{place} * ratio).toPoint(), (last * ratio).toPoint()};
    widget->render(&device, place, {}, QWidget::RenderFlags{});
    // Texts are judged by the widget that draws them.
    const QTransform toWidget =
        QTransform::fromScale(1 / ratio, 1 / ratio) * QTransform::fromTranslate(-place.x(), -place.y());
    for (Text &text : record.texts) {
        text.ink = (text.toScreen * toWidget).mapRect(text.ink);
    }
    return record;
}

} // namespace quilmora::test
