#include "screens/history/ImagePreviewView.h"

#include "screens/history/ElidedLabel.h"
#include "ui/accessibility/Accessibility.h"
#include "ui/dialogs/FileDialogs.h"
#include "ui/dialogs/Sheet.h"
#include "ui/style/FocusRing.h"
#include "ui/theme/Fonts.h"
#include "ui/theme/Measures.h"
#include "ui/theme/PixelSnapper.h"
#include "ui/theme/Shapes.h"
#include "ui/widgets/ActionButton.h"
#include "ui/widgets/PictureView.h"
#include "ui/widgets/TextLabel.h"

#include <QFontMetrics>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

constexpr QSize viewSize{900, 760};
constexpr int padding = 40;
constexpr int spacing = 18;
constexpr int closeRowPadding = 8;
constexpr int textSpacing = 6;
constexpr int promptPadding = 24;
constexpr int promptLines = 3;
constexpr int actionRowPadding = 6;
constexpr double buttonShadowOpacity = 0.30;
constexpr QSize pictureBox{800, 540};
constexpr int metaPixelSize = 11;

QString modelText(const HistoryRecord &record) { return record.modelID.isEmpty() ? u"—"_s : record.modelID; }

QString timeText(const HistoryRecord &record)
{
    return u" · "_s + localDateText(record.createdAt, u"yyyy-MM-dd HH:mm"_s);
}

/// The name of a long model is elided, so that the time is visible.
QString metaLine(const HistoryRecord &record, const QFont &font, int width)
{
    const QString time = timeText(record);
    constexpr int roundings = 2; // Of the widths of both texts.
    const int room = width - QFontMetrics{font}.horizontalAdvance(time) - roundings;
    return ElidedText{modelText(record), font, 1}.lines(room).constFirst() + time;
}

/// The backdrop over the background of the window, as one color: two antialiased corners on top of each other
/// would not look like one.
QColor backgroundColor()
{
    const QColor below = themeColor(ColorRole::windowBackground);
    const QColor above = themeColor(ColorRole::previewBackdrop);
    const auto mixed = [share = above.alphaF()](float lower, float upper) {
        return lower + (upper - lower) * share;
    };
    return QColor::fromRgbF(mixed(below.redF(), above.redF()), mixed(below.greenF(), above.greenF()),
                            mixed(below.blueF(), above.blueF()));
}

/// A symbol without any frame.
class SymbolButton final : public PaintedButton
{
public:
    SymbolButton(Symbol symbol, ColorRole color, const QString &accessibleName, QWidget *parent)
        : PaintedButton{accessibleName, parent},
          m_symbol{std::move(symbol)},
          m_color{color}
    {
        setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    }

    QSize sizeHint() const override { return {m_symbol.extent(), m_symbol.extent()}; }

protected:
    void paint(QPainter &painter) override
    {
        QColor color = themeColor(m_color);
        if (isDown()) {
            constexpr float pressedShare = 0.6F;
            color.setAlphaF(color.alphaF() * pressedShare);
        }
        m_symbol.draw(painter, rect(), color);
        if (showsFocus()) {
            drawFocusRing(painter, capsule(PixelSnapper{painter}.aligned(rect())));
        }
    }

private:
    const Symbol m_symbol;
    const ColorRole m_color;
};

/// A click on it does not close the preview.
template <typename Widget>
Widget *inFront(Widget *widget)
{
    widget->setAttribute(Qt::WA_NoMousePropagation);
    return widget;
}

} // namespace

ImagePreviewView::ImagePreviewView(HistoryRecord record, std::function<void()> onClose, FileDialogs &dialogs,
                                   QWidget *parent)
    : ShadowHost{parent},
      m_record{std::move(record)},
      m_onClose{std::move(onClose)},
      m_dialogs{dialogs}
{
    auto *column = new QVBoxLayout{this};
    column->setContentsMargins(padding, padding, padding, padding);
    column->setSpacing(0);
    // The size of the picture depends on that of the view.
    column->setSizeConstraint(QLayout::SetNoConstraint);
    column->addStretch();
    column->addLayout(makeCloseRow());
    column->addSpacing(spacing);
    column->addLayout(makeTexts());
    column->addSpacing(spacing);
    column->addLayout(makeActionRow());
    column->addStretch();
    if (const QImage image = m_record.image(); !image.isNull()) {
        insertPicture(*column, image);
    }
    readInLayoutOrder(*column);
}

QLayout *ImagePreviewView::makeCloseRow()
{
    auto *close =
        new SymbolButton{Symbol{u"xmark.circle.fill"_s, 22}, ColorRole::onBackdropSecondary, u"关闭"_s, this};
    connect(close, &SymbolButton::clicked, this, [this] { m_onClose(); });
    auto *row = new QHBoxLayout;
    row->setContentsMargins(closeRowPadding, 0, closeRowPadding, 0);
    row->addStretch();
    row->addWidget(inFront(close));
    return row;
}

/// Below the close row.
void ImagePreviewView::insertPicture(QVBoxLayout &column, const QImage &image)
{
    m_picture = new PictureView{
        image,
        u"封面"_s,
        {pictureBox, measures::cardRadius, {themeColor(ColorRole::previewPictureShadow), 14, {0, 6}}},
        this};
    constexpr int afterCloseRow = 2;
    column.insertSpacing(afterCloseRow, spacing);
    column.insertWidget(afterCloseRow + 1, inFront(m_picture), 0, Qt::AlignHCenter);
}

void ImagePreviewView::fitContents()
{
    const int contentWidth = width() - 2 * padding;
    m_meta->setText(metaLine(m_record, systemFont(metaPixelSize), contentWidth));
    if (m_picture != nullptr) {
        const int taken = layout()->totalHeightForWidth(width()) - m_picture->sizeHint().height();
        const QSize room{contentWidth, std::max(1, height() - taken)};
        m_picture->setBox(pictureBox.boundedTo(room));
    }
    // Before the picture is painted at its old size.
    layout()->activate();
}

QLayout *ImagePreviewView::makeTexts()
{
    auto *prompt = new ElidedLabel{m_record.prompt, systemFont(14), ColorRole::onBackdrop, promptLines, this};
    auto *promptRow = new QHBoxLayout;
    promptRow->setContentsMargins(promptPadding, 0, promptPadding, 0);
    promptRow->addWidget(inFront(prompt));
    m_meta = new TextLabel{{}, {metaPixelSize, QFont::Normal, ColorRole::onBackdropSecondary}, this};
    m_meta->setAccessibleName(modelText(m_record) + timeText(m_record));
    auto *texts = new QVBoxLayout;
    texts->setSpacing(textSpacing);
    texts->addLayout(promptRow);
    texts->addWidget(inFront(m_meta), 0, Qt::AlignHCenter);
    return texts;
}

QLayout *ImagePreviewView::makeActionRow()
{
    auto *save = new GradientButton{u"square.and.arrow.down"_s, u"保存图片"_s, buttonShadowOpacity, this};
    auto *close = new GradientButton{u"xmark"_s, u"关闭预览"_s, buttonShadowOpacity, this};
    connect(save, &GradientButton::clicked, this, &ImagePreviewView::saveImage);
    connect(close, &GradientButton::clicked, this, [this] { m_onClose(); });
    setFocusProxy(save);
    auto *row = new QHBoxLayout;
    row->setContentsMargins(0, actionRowPadding, 0, 0);
    row->setSpacing(measures::buttonSpacing);
    row->addStretch();
    row->addWidget(inFront(save));
    row->addWidget(inFront(close));
    row->addStretch();
    return row;
}

void ImagePreviewView::saveImage()
{
    if (const QImage image = m_record.image(); !image.isNull()) {
        exportCover(image, m_record.createdAt, m_dialogs, this);
    }
}

QSize ImagePreviewView::sizeHint() const { return viewSize; }

void ImagePreviewView::resizeEvent(QResizeEvent *event)
{
    ShadowHost::resizeEvent(event);
    fitContents();
}

void ImagePreviewView::paintEvent(QPaintEvent *event)
{
    Sheet::paintBackground(*this, backgroundColor());
    ShadowHost::paintEvent(event);
}

void ImagePreviewView::mousePressEvent(QMouseEvent *event)
{
    m_pressedOnBackdrop = event->button() == Qt::LeftButton;
}

void ImagePreviewView::mouseReleaseEvent(QMouseEvent *event)
{
    const bool clicked = std::exchange(m_pressedOnBackdrop, false) && event->button() == Qt::LeftButton &&
                         rect().contains(event->position().toPoint());
    if (clicked && childAt(event->position().toPoint()) == nullptr) {
        m_onClose();
    }
}

} // namespace quilmora
