#include "PaintLog.h"

#include <QFontMetricsF>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace quilmora::test {
namespace {

/// Sides shorter than this are part of a corner or of a drawing.
constexpr double shortestSide = 8;

/// Draws nothing and notes what it is asked to draw.
class RecordingEngine final : public QPaintEngine
{
public:
    explicit RecordingEngine(PaintLog &target) : QPaintEngine{AllFeatures}, m_record{target} {}

    bool begin(QPaintDevice * /*device*/) override { return true; }
    bool end() override { return true; }
    void updateState(const QPaintEngineState & /*state*/) override {}
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
    Type type() const override { return User; }

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

/// A sheet of the window's size and resolution for that engine.
class RecordingDevice final : public QPaintDevice
{
public:
    RecordingDevice(const QWidget &window, PaintLog &record) : m_source{window}, m_engine{record} {}

    QPaintEngine *paintEngine() const override { return &m_engine; }

protected:
    int metric(PaintDeviceMetric metric) const override
    {
        const double ratio = m_source.devicePixelRatioF();
        switch (metric) {
        case PdmWidth:
            return static_cast<int>(std::ceil(m_source.width() * ratio));
        case PdmHeight:
            return static_cast<int>(std::ceil(m_source.height() * ratio));
        case PdmDevicePixelRatio:
            return static_cast<int>(ratio);
        case PdmDevicePixelRatioScaled:
            return static_cast<int>(ratio * devicePixelRatioFScale());
        case PdmDepth:
            return 32;
        case PdmDpiX:
        case PdmPhysicalDpiX:
            return m_source.logicalDpiX();
        case PdmDpiY:
        case PdmPhysicalDpiY:
            return m_source.logicalDpiY();
        default:
            return QPaintDevice::metric(metric);
        }
    }

private:
    const QWidget &m_source;
    mutable RecordingEngine m_engine;
};

} // namespace

PaintLog PaintLog::of(QWidget *widget)
{
    PaintLog record;
    RecordingDevice device{*widget->window(), record};
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
