#include "ui/widgets/LogoView.h"

#include "model/PictureLimits.h"
#include "ui/accessibility/Accessibility.h"
#include "ui/theme/PixelSnapper.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/Symbol.h"
#include "ui/theme/Theme.h"

#include <QCoreApplication>
#include <QPainter>

#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

/// The smallest asset that is at least twice as large, which looks as sharp as the largest. That one would
/// take a seventh of the time of the program start.
QImage logoImage(const LogoFiles &files, int pixels)
{
    QStringList paths;
    for (const QString &folder : files.resourceFolders) {
        paths.append(folder + u"/AppLogo.png"_s);
    }
    for (const int side : {64, 128}) {
        if (side >= 2 * pixels) {
            paths.append(QString{files.assetPath}.replace(u".png"_s, u"-%1.png"_s.arg(side)));
        }
    }
    paths.append(files.assetPath);
    QImage image;
    for (auto path = paths.cbegin(); path != paths.cend() && image.isNull(); ++path) {
        image = imageCodec::decodeFile(*path, pictureLimits::file);
    }
    return image;
}

} // namespace

QStringList LogoFiles::besideProgram()
{
    const QString program = QCoreApplication::applicationDirPath();
    return {program + u"/../Resources"_s, program + u"/../share/quilmora"_s};
}

QPixmap logoPixmap(int side, double cornerRadius, double devicePixelRatio, const LogoFiles &files)
{
    const int pixels = static_cast<int>(std::lround(side * devicePixelRatio));
    const QImage image = logoImage(files, pixels);
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

LogoView::LogoView(int side, double cornerRadius, QWidget *parent, LogoFiles files)
    : QWidget{parent},
      m_side{side},
      m_cornerRadius{cornerRadius},
      m_files{std::move(files)}
{
    setAccessibleRole(this, {QAccessible::Graphic});
    setAccessibleName(u"Quilmora"_s);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void LogoView::paintEvent(QPaintEvent * /*event*/)
{
    if (m_logo.devicePixelRatio() != devicePixelRatioF() || m_logo.isNull()) {
        m_logo = logoPixmap(m_side, m_cornerRadius, devicePixelRatioF(), m_files);
    }
    QPainter painter{this};
    painter.drawPixmap(PixelSnapper{painter}.aligned(QPointF{0, 0}), m_logo);
}

} // namespace quilmora
