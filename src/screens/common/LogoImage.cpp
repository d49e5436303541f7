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

QImage logoImage(const QStringList &resourceFolders, const QString &assetPath)
{
    for (const QString &folder : resourceFolders) {
        if (QImage image = imageCodec::decodeFile(folder + u"/AppLogo.png"_s); !image.isNull()) {
            return image;
        }
    }
    return imageCodec::decodeFile(assetPath);
}

} // namespace

QString logoAssetPath()
{
    return u":/assets/AppLogo.png"_s;
}

QPixmap logoPixmap(int side, double cornerRadius, double devicePixelRatio, const QStringList &resourceFolders,
                   const QString &assetPath)
{
    const QImage image = logoImage(resourceFolders, assetPath);
    if (image.isNull()) {
        return Symbol::pixmap(u"sparkles.rectangle.stack.fill"_s, side, themeColor(ColorRole::primaryText),
                              devicePixelRatio);
    }
    const int pixels = static_cast<int>(std::lround(side * devicePixelRatio));
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
