#include "support/DrawnTexts.h"

#include <QPaintDevice>
#include <QPaintEngine>
#include <QWidget>

namespace quilmora::test
{
namespace
{

/// Draws nothing and notes what text it is asked to draw.
class TextEngine final : public QPaintEngine
{
public:
    TextEngine() : QPaintEngine{AllFeatures} {}

    bool begin(QPaintDevice * /*device*/) override { return true; }
    bool end() override { return true; }
    void updateState(const QPaintEngineState & /*state*/) override {}
    void drawPixmap(const QRectF & /*to*/, const QPixmap & /*pixmap*/, const QRectF & /*from*/) override {}
    void drawPath(const QPainterPath & /*path*/) override {}
    void drawPolygon(const QPointF * /*points*/, int /*count*/, PolygonDrawMode /*mode*/) override {}
    void drawTextItem(const QPointF & /*place*/, const QTextItem &item) override
    {
        texts.append(item.text());
    }
    Type type() const override { return User; }

    QStringList texts;
};

/// A sheet of the widget's size for that engine.
class TextDevice final : public QPaintDevice
{
public:
    explicit TextDevice(const QWidget &widget) : source{widget} {}

    QPaintEngine *paintEngine() const override { return &engine; }
    const QStringList &texts() const { return engine.texts; }

protected:
    int metric(PaintDeviceMetric metric) const override
    {
        switch (metric) {
        case PdmWidth:
            return source.width();
        case PdmHeight:
            return source.height();
        case PdmDevicePixelRatioScaled:
            return static_cast<int>(devicePixelRatioFScale());
        case PdmDevicePixelRatio:
            return 1;
        case PdmDepth:
            return 32;
        case PdmDpiX:
        case PdmPhysicalDpiX:
            return source.logicalDpiX();
        case PdmDpiY:
        case PdmPhysicalDpiY:
            return source.logicalDpiY();
        default:
            return QPaintDevice::metric(metric);
        }
    }

private:
    const QWidget &source;
    mutable TextEngine engine;
};

} // namespace

QStringList drawnTexts(QWidget *widget)
{
    TextDevice device{*widget};
    widget->render(&device, {}, {}, QWidget::DrawChildren);
    return device.texts();
}

} // namespace quilmora::test
