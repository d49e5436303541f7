#pragma once

#include <QPaintDevice>
#include <QPaintEngine>
#include <QWidget>

#include <cmath>

namespace quilmora::test {

/// Draws nothing: heirs note what they are asked to draw.
class SilentEngine : public QPaintEngine
{
public:
    SilentEngine() : QPaintEngine{AllFeatures} {}

    bool begin(QPaintDevice * /*device*/) override { return true; }
    bool end() override { return true; }
    void updateState(const QPaintEngineState & /*state*/) override {}
    void drawPixmap(const QRectF & /*to*/, const QPixmap & /*pixmap*/, const QRectF & /*from*/) override {}
    void drawPath(const QPainterPath & /*path*/) override {}
    void drawPolygon(const QPointF * /*points*/, int /*count*/, PolygonDrawMode /*mode*/) override {}
    Type type() const override { return User; }
};

/// A sheet of a widget's size for such an engine.
class SilentDevice final : public QPaintDevice
{
public:
    SilentDevice(const QWidget &widget, QPaintEngine &paintEngine, double devicePixelRatio = 1)
        : m_source{widget},
          m_engine{paintEngine},
          m_ratio{devicePixelRatio}
    {
    }

    QPaintEngine *paintEngine() const override { return &m_engine; }

protected:
    int metric(PaintDeviceMetric metric) const override
    {
        switch (metric) {
        case PdmWidth:
            return static_cast<int>(std::ceil(m_source.width() * m_ratio));
        case PdmHeight:
            return static_cast<int>(std::ceil(m_source.height() * m_ratio));
        case PdmDevicePixelRatio:
            return static_cast<int>(m_ratio);
        case PdmDevicePixelRatioScaled:
            return static_cast<int>(m_ratio * devicePixelRatioFScale());
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
    QPaintEngine &m_engine;
    const double m_ratio;
};

} // namespace quilmora::test
