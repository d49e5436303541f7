#include "ui/theme/LogoImage.h"

#include "model/PictureLimits.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/Symbol.h"
#include "ui/theme/Theme.h"

#include <QCoreApplication>
#include <QPainter>

#include <cmath>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

/// The smallest asset that is at least twice as large, which looks as sharp as the largest. That one would
/// take a seventh of the time of the program start.
QImage assetImage(const QString &path, int pixels)
{
    for (const int side : {64, 128}) {
        if (side >= 2 * pixels) {
            const QString smaller = QString{path}.replace(u".png"_s, u"-%1.png"_s.arg(side));
            if (QImage image = imageCodec::decodeFile(smaller, pictureLimits::file); !image.isNull()) {
                return image;
            }
        }
    }
    return imageCodec::decodeFile(path, pictureLimits::file);
}

QImage logoImage(const QStringList &resourceFolders, const QString &assetPath, int pixels)
{
    for (const QString &folder : resourceFolders) {
        if (QImage image = imageCodec::decodeFile(folder + u"/AppLogo.png"_s, pictureLimits::file);
            !image.isNull()) {
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
