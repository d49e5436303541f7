#include "screens/common/LogoImage.h"

#include "platform/ImageCodec.h"
#include "screens/common/Shapes.h"
#include "screens/common/Symbol.h"
#include "screens/common/Theme.h"

#include <QCoreApplication>
#include <QPainter>

#include <cmath>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

/// The asset in the least of its sizes that still is to be made smaller by half at least, so that it is as
/// sharp as the largest, which would take a seventh of the time in which the program starts.
QImage assetImage(const QString &path, int pixels)
{
    for (const int side : {64, 128}) {
        if (side >= 2 * pixels) {
            const QString smaller = QString{path}.replace(u".png"_s, u"-%1.png"_s.arg(side));
            if (QImage image = imageCodec::decodeFile(smaller); !image.isNull()) {
                return image;
            }
        }
    }
    return imageCodec::decodeFile(path);
}

QImage logoImage(const QStringList &resourceFolders, const QString &assetPath, int pixels)
{
    for (const QString &folder : resourceFolders) {
        if (QImage image = imageCodec::decodeFile(folder + u"/AppLogo.png"_s); !image.isNull()) {
            return image;
        }
    }
    return assetImage(assetPath, pixels);
}

} // namespace

QString logoAssetPath()
{
    return u":/assets/AppLogo.png"_s;
}

QPixmap logoPixmap(int side, double cornerRadius, double devicePixelRatio, const QStringList &resourceFolders,
                   const QString &assetPath)
{
    const int pixels = static_cast<int>(std::lround(side * devicePixelRatio));
    const QImage image = logoImage(resourceFolders, assetPath, pixels);
    if (image.isNull()) {
        return Symbol::pixmap(u"sparkles.rectangle.stack.fill"_s, side, themeColor(ColorRole::primaryText),
                              devicePixelRatio);
    }
    const QImage fitted = image.scaled(pixels, pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QPixmap logo{pixels, pixels};
    logo.fill(Qt::transparent);
    QPainter painter{&logo};
    painter.setRenderHint(QPainter::Antialiasing);
    const QPoint corner{(pixels - fitted.width()) / 2, (pixels - fitted.height()) / 2};
    painter.setBrushOrigin(corner);
    const QPainterPath frame = roundedRect(logo.rect(), cornerRadius * devicePixelRatio);
    QPainterPath picture;
    picture.addRect(QRectF{QPointF{corner}, QSizeF{fitted.size()}});
    painter.fillPath(frame.intersected(picture), QBrush{fitted});
    painter.end();
    logo.setDevicePixelRatio(devicePixelRatio);
    return logo;
}

QStringList applicationResourceFolders()
{
    const QString program = QCoreApplication::applicationDirPath();
    return {program + u"/../Resources"_s, program + u"/../share/quilmora"_s};
}

} // namespace quilmora
