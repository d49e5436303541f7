#include "demo_pictures/DemoPictures.h"

#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

using namespace Qt::StringLiterals;

namespace quilmora::demoPictures {
namespace {

void draw(const QString &drawing, QSize size, const QString &path)
{
    QImage image{size, QImage::Format_RGB32};
    image.fill(Qt::white);
    QSvgRenderer renderer{drawing};
    QPainter painter{&image};
    renderer.render(&painter);
    painter.end();
    if (!renderer.isValid() || !image.save(path, nullptr, 92)) {
        qFatal("Cannot write %s", qUtf8Printable(path));
    }
}

} // namespace

void writePresenter(const QString &path) { draw(u":/demo/presenter.svg"_s, {1200, 1200}, path); }

void writeSampleCover(const QString &path) { draw(u":/demo/sample-cover.svg"_s, {1600, 900}, path); }

} // namespace quilmora::demoPictures
