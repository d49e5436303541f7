#include "screens/generate/UploadFace.h"

#include "platform/WellFormedText.h"
#include "screens/common/FocusRing.h"
#include "screens/common/Fonts.h"
#include "screens/common/PixelGrid.h"
#include "screens/common/Shapes.h"
#include "screens/common/Theme.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

constexpr int preferredWidth = 200;
/// Of the invitation, and the most of a picture.
constexpr int faceHeight = 140;
/// However flat the picture is, the button can be clicked.
constexpr int leastHeight = 8;
constexpr double cornerRadius = 10;
constexpr int spacing = 6;

QString invitation()
{
    return u"点击上传"_s;
}

} // namespace

UploadFace::UploadFace(const QString &accessibleName, const QString &iconName, QWidget *parent)
    : PaintedButton{parent},
      symbol{iconName, 22},
      picture{cornerRadius}
{
    setAccessibleName(accessibleName);
    setAccessibleDescription(invitation());
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::PointingHandCursor);
    QSizePolicy policy{QSizePolicy::Expanding, QSizePolicy::Preferred};
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void UploadFace::setImage(const QImage &image, const QString &fileName)
{
    picture.setImage(image);
    setAccessibleDescription(image.isNull() ? invitation() : u"已选择 "_s + wellFormedText::from(fileName));
    updateGeometry();
    update();
}

QSize UploadFace::sizeHint() const
{
    return {preferredWidth, heightForWidth(preferredWidth)};
}

int UploadFace::heightForWidth(int width) const
{
    return picture.isNull() ? faceHeight
                            : std::max(picture.fittedSize({width, faceHeight}).height(), leastHeight);
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
    const double lineWidth = grid.lineWidth(Theme::current().borderWidth(1));
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
                     Qt::AlignCenter, invitation());
}

void UploadFace::paintPicture(QPainter &painter)
{
    const PixelGrid grid{painter};
    // Not into the face itself, whose height is rounded: the picture would come out narrower.
    QRect place{{0, 0}, picture.fittedSize({width(), faceHeight})};
    place.moveCenter(rect().center());
    painter.drawPixmap(grid.aligned(place.topLeft()), picture.pixmap(place.size(), devicePixelRatioF()));
}

} // namespace quilmora
