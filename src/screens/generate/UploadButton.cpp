#include "screens/generate/UploadButton.h"

#include "platform/UnicodeText.h"
#include "ui/style/FocusRing.h"
#include "ui/theme/Fonts.h"
#include "ui/theme/Measures.h"
#include "ui/theme/PixelSnapper.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/Theme.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

constexpr int preferredWidth = 200;
constexpr int faceHeight = 140;      ///< Of the placeholder, and the maximum of a picture.
constexpr int flatPictureHeight = 8; ///< Of flat pictures.
constexpr int spacing = 6;

QString placeholder()
{
    return u"点击上传"_s;
}

} // namespace

UploadButton::UploadButton(const QString &accessibleName, const QString &iconName, QWidget *parent)
    : PaintedButton{accessibleName, parent},
      m_symbol{iconName, 22},
      m_picture{measures::cardRadius}
{
    setAccessibleDescription(placeholder());
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::PointingHandCursor);
    QSizePolicy policy{QSizePolicy::Expanding, QSizePolicy::Preferred};
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void UploadButton::setImage(const QImage &image, const QString &fileName)
{
    m_picture.setImage(image);
    setAccessibleDescription(image.isNull() ? placeholder() : u"已选择 "_s + unicodeText::sanitize(fileName));
    updateGeometry();
    update();
}

QSize UploadButton::sizeHint() const
{
    return {preferredWidth, heightForWidth(preferredWidth)};
}

int UploadButton::heightForWidth(int width) const
{
    return m_picture.isNull()
               ? faceHeight
               : std::max(m_picture.fittedSize({width, faceHeight}).height(), flatPictureHeight);
}

void UploadButton::paint(QPainter &painter)
{
    if (m_picture.isNull()) {
        paintPlaceholder(painter);
    } else {
        paintPicture(painter);
    }
    if (showsFocus()) {
        drawFocusRing(painter, roundedRect(PixelSnapper{painter}.aligned(rect()), measures::cardRadius));
    }
}

void UploadButton::paintPlaceholder(QPainter &painter) const
{
    const PixelSnapper grid{painter};
    const double lineWidth = grid.borderWidth();
    const QPainterPath outline =
        roundedRect(insideLine(grid.aligned(rect()), lineWidth), measures::cardRadius);
    painter.fillPath(outline, themeColor(ColorRole::controlBackground));
    if (isDown() || underMouse()) {
        painter.fillPath(outline, themeColor(isDown() ? ColorRole::controlPressed : ColorRole::hoverFill));
    }
    QPen dashes{themeColor(ColorRole::tertiaryText), lineWidth};
    dashes.setDashPattern({5, 4});
    painter.strokePath(outline, dashes);

    const QFont font = systemFont(12);
    const int textHeight = QFontMetrics{font}.height();
    const int blockHeight = m_symbol.extent() + spacing + textHeight;
    const double top = (height() - blockHeight) / 2.0;
    const QColor color = themeColor(ColorRole::secondaryText);
    m_symbol.draw(painter, QRectF{0, top, width() * 1.0, m_symbol.extent() * 1.0}, color);
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(QRectF{0, top + blockHeight - textHeight, width() * 1.0, textHeight * 1.0},
                     Qt::AlignCenter, placeholder());
}

void UploadButton::paintPicture(QPainter &painter)
{
    const PixelSnapper grid{painter};
    // Not fitted into rect(), whose rounded height would make the picture narrower.
    QRect place{{0, 0}, m_picture.fittedSize({width(), faceHeight})};
    place.moveCenter(rect().center());
    painter.drawPixmap(grid.aligned(place.topLeft()), m_picture.pixmap(place.size(), devicePixelRatioF()));
}

} // namespace quilmora
