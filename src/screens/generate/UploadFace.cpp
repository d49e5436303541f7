#include "screens/generate/UploadFace.h"

#include "screens/common/FocusRing.h"
#include "screens/common/Fonts.h"
#include "screens/common/PixelGrid.h"
#include "screens/common/Shapes.h"
#include "screens/common/Theme.h"

#include <QFontMetrics>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

constexpr int faceHeight = 140;
constexpr double cornerRadius = 10;
constexpr int spacing = 6;

} // namespace

UploadFace::UploadFace(const QString &accessibleName, const QString &iconName, QWidget *parent)
    : PaintedButton{parent},
      symbol{iconName, 22},
      picture{cornerRadius}
{
    setAccessibleName(accessibleName);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void UploadFace::setImage(const QImage &image)
{
    picture.setImage(image);
    update();
}

QSize UploadFace::sizeHint() const
{
    return {200, faceHeight};
}

void UploadFace::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    if (picture.isNull()) {
        paintInvitation(painter);
    } else {
        paintPicture(painter);
    }
    if (showsFocus()) {
        drawFocusRing(painter, roundedRect(PixelGrid{painter}.aligned(rect()), cornerRadius));
    }
}

void UploadFace::paintInvitation(QPainter &painter) const
{
    const PixelGrid grid{painter};
    const double lineWidth = grid.lineWidth(1);
    const QPainterPath outline = roundedRect(insideLine(grid.aligned(rect()), lineWidth), cornerRadius);
    painter.fillPath(outline, themeColor(ColorRole::controlBackground));
    if (isDown() || underMouse()) {
        painter.fillPath(outline, themeColor(isDown() ? ColorRole::controlPressed : ColorRole::hoverFill));
    }
    QPen dashes{themeColor(ColorRole::tertiaryText), lineWidth};
    dashes.setDashPattern({5, 4});
    painter.strokePath(outline, dashes);

    const QFont font = systemFont(12);
    const int textHeight = QFontMetrics{font}.height();
    const int blockHeight = symbol.extent() + spacing + textHeight;
    const double top = (height() - blockHeight) / 2.0;
    const QColor color = themeColor(ColorRole::secondaryText);
    symbol.draw(painter, QRectF{0, top, width() * 1.0, symbol.extent() * 1.0}, color);
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(QRectF{0, top + blockHeight - textHeight, width() * 1.0, textHeight * 1.0},
                     Qt::AlignCenter, u"点击上传"_s);
}

void UploadFace::paintPicture(QPainter &painter)
{
    const PixelGrid grid{painter};
    QRect place{{0, 0}, picture.fittedSize(size())};
    place.moveCenter(rect().center());
    painter.drawPixmap(grid.aligned(place.topLeft()), picture.pixmap(place.size(), devicePixelRatioF()));
}

} // namespace quilmora
