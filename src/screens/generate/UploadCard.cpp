#include "screens/generate/UploadCard.h"

#include "model/PictureLimits.h"
#include "platform/UnicodeText.h"
#include "ui/accessibility/Accessibility.h"
#include "ui/dialogs/FileDialogs.h"
#include "ui/style/FocusRing.h"
#include "ui/theme/Fonts.h"
#include "ui/theme/Measures.h"
#include "ui/theme/PixelSnapper.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/Theme.h"
#include "ui/widgets/ActionButton.h"
#include "ui/widgets/TextLabel.h"

#include <QFile>
#include <QFileInfo>
#include <QFontMetrics>
#include <QPainter>
#include <QPointer>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

constexpr int preferredWidth = 200;
constexpr int faceHeight = 140;      ///< Of the placeholder, and the maximum of a picture.
constexpr int flatPictureHeight = 8; ///< Of flat pictures.
constexpr int spacing = 6;

QString placeholder() { return u"点击上传"_s; }

constexpr double maximumMegabytes = 10.0;

/// Why the file's attributes cannot be read; nothing when they can.
std::optional<QString> attributesError(const QString &path)
{
    // A broken link has attributes; the picture cannot be read then.
    const QFileInfo info{path};
    if (info.exists() || info.isSymLink()) {
        return std::nullopt;
    }
    // Only opening the file gives the reason.
    QFile file{path};
    return file.open(QIODevice::ReadOnly) ? std::nullopt : std::optional{file.errorString()};
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

QSize UploadButton::sizeHint() const { return {preferredWidth, heightForWidth(preferredWidth)}; }

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

UploadCard::UploadCard(const QString &title, const QString &iconName, FileDialogs &dialogs, QWidget *parent)
    : QWidget{parent},
      m_dialogs{dialogs},
      m_face{new UploadButton{title, iconName, this}},
      m_errorLine{new ErrorLine{11, this}},
      m_removeButton{new ActionButton{
          u"xmark.circle"_s, u"移除"_s, {ActionButton::Kind::plain, 11, QFont::Normal, 4, {0, 2}}, this}}
{
    m_removeButton->setAccessibleDescription(title);
    m_removeButton->hide();
    connect(m_face, &UploadButton::clicked, this, &UploadCard::chooseFile);
    connect(m_removeButton, &ActionButton::clicked, this, &UploadCard::removeImage);

    auto *column = new QVBoxLayout{this};
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    column->addWidget(new TextLabel{title, {12, QFont::Normal, ColorRole::secondaryText}, this});
    column->addWidget(m_face);
    column->addWidget(m_errorLine);
    column->addWidget(m_removeButton, 0, Qt::AlignLeft);
    column->addStretch();
    readInLayoutOrder(*column);
}

void UploadCard::chooseFile()
{
    m_errorLine->setMessage({});
    // The window can be closed while the dialog is open.
    const QPointer<UploadCard> self{this};
    const auto path = m_dialogs.chooseReferenceImage(this);
    if (self != nullptr && path) {
        load(*path);
    }
}

void UploadCard::load(const QString &path)
{
    if (const auto error = attributesError(path)) {
        m_errorLine->setMessage(u"读取文件失败："_s + *error);
        return;
    }
    const double megabytes = static_cast<double>(QFileInfo{path}.size()) * (1.0 / 1024) * (1.0 / 1024);
    if (megabytes > maximumMegabytes) {
        m_errorLine->setMessage(u"图片过大（%1M），不能超过 10M"_s.arg(megabytes, 0, 'f', 1));
        return;
    }
    setImage(imageCodec::decodeFile(path, pictureLimits::file), QFileInfo{path}.fileName());
}

void UploadCard::removeImage()
{
    announce(this, u"已移除"_s);
    // Before the focused button is hidden.
    m_face->setFocus();
    setImage({}, {});
}

void UploadCard::setImage(const QImage &image, const QString &fileName)
{
    m_picture = image;
    m_face->setImage(image, fileName);
    m_removeButton->setVisible(!image.isNull());
}

} // namespace quilmora
