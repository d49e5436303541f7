#include "screens/history/ImagePreviewView.h"

#include "screens/common/ClampedLabel.h"
#include "screens/common/CoverExport.h"
#include "screens/common/Fonts.h"
#include "screens/common/GradientButton.h"
#include "screens/common/PictureView.h"
#include "screens/common/ReadingOrder.h"
#include "screens/common/Sheet.h"
#include "screens/common/SymbolButton.h"
#include "screens/common/TextLabel.h"

#include <QFontMetrics>
#include <QMouseEvent>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

constexpr QSize viewSize{900, 760};
constexpr int padding = 40;
constexpr int spacing = 18;
constexpr int closeRowPadding = 8;
constexpr int textSpacing = 6;
constexpr int promptPadding = 24;
constexpr int promptLines = 3;
constexpr int actionRowPadding = 6;
constexpr int buttonSpacing = 14;
constexpr double buttonShadowOpacity = 0.30;
constexpr QSize pictureBox{800, 540};
constexpr double pictureCornerRadius = 10;
constexpr int metaPixelSize = 11;

QString modelText(const HistoryRecord &record)
{
    return record.modelID.isEmpty() ? u"—"_s : record.modelID;
}

QString timeText(const HistoryRecord &record)
{
    return u" · "_s + localDateText(record.createdAt, u"yyyy-MM-dd HH:mm"_s);
}

/// Model and time on one line. A long model is cut off, so that the time stays in sight.
QString metaLine(const HistoryRecord &record, const QFont &font, int width)
{
    const QString time = timeText(record);
    // The two widths and that of both together are rounded each by itself.
    constexpr int roundings = 2;
    const int room = width - QFontMetrics{font}.horizontalAdvance(time) - roundings;
    return ClampedText{modelText(record), font, 1}.lines(room).constFirst() + time;
}

/// The window's background below the backdrop. As one colour: laid over each other at the soft corners, the
/// lower one would shine through.
QColor ground()
{
    const QColor below = themeColor(ColorRole::windowBackground);
    const QColor above = themeColor(ColorRole::previewBackdrop);
    const auto mixed = [share = above.alphaF()](float lower, float upper) {
        return lower + (upper - lower) * share;
    };
    return QColor::fromRgbF(mixed(below.redF(), above.redF()), mixed(below.greenF(), above.greenF()),
                            mixed(below.blueF(), above.blueF()));
}

/// A widget whose clicks do not reach what lies behind it.
template <typename Widget>
Widget *inFront(Widget *widget)
{
    widget->setAttribute(Qt::WA_NoMousePropagation);
    return widget;
}

} // namespace

ImagePreviewView::ImagePreviewView(HistoryRecord shown, std::function<void()> close, FilePanels &filePanels,
                                   QWidget *parent)
    : ShadowGround{parent},
      record{std::move(shown)},
      onClose{std::move(close)},
      panels{filePanels}
{
    auto *column = new QVBoxLayout{this};
    column->setContentsMargins(padding, padding, padding, padding);
    column->setSpacing(0);
    // The picture is fitted to the view, not the view to the picture.
    column->setSizeConstraint(QLayout::SetNoConstraint);
    column->addStretch();
    column->addLayout(makeCloseRow());
    column->addSpacing(spacing);
    column->addLayout(makeTexts());
    column->addSpacing(spacing);
    column->addLayout(makeActionRow());
    column->addStretch();
    if (const QImage image = record.image(); !image.isNull()) {
        insertPicture(*column, image);
    }
    readInLayoutOrder(*column);
}

QLayout *ImagePreviewView::makeCloseRow()
{
    auto *close =
        new SymbolButton{Symbol{u"xmark.circle.fill"_s, 22}, ColorRole::onBackdropSecondary, u"关闭"_s, this};
    connect(close, &SymbolButton::clicked, this, [this] { onClose(); });
    auto *row = new QHBoxLayout;
    row->setContentsMargins(closeRowPadding, 0, closeRowPadding, 0);
    row->addStretch();
    row->addWidget(inFront(close));
    return row;
}

/// Below the close row.
void ImagePreviewView::insertPicture(QVBoxLayout &column, const QImage &image)
{
    picture = new PictureView{
        image,
        u"封面"_s,
        {pictureBox, pictureCornerRadius, {themeColor(ColorRole::previewPictureShadow), 14, {0, 6}}},
        this};
    constexpr int afterCloseRow = 2;
    column.insertSpacing(afterCloseRow, spacing);
    column.insertWidget(afterCloseRow + 1, inFront(picture), 0, Qt::AlignHCenter);
}

void ImagePreviewView::fitContents()
{
    const int contentWidth = width() - 2 * padding;
    meta->setText(metaLine(record, systemFont(metaPixelSize), contentWidth));
    if (picture != nullptr) {
        const int taken = layout()->totalHeightForWidth(width()) - picture->sizeHint().height();
        const QSize room{contentWidth, std::max(1, height() - taken)};
        picture->setBox(pictureBox.boundedTo(room));
    }
    // Now, not at the next turn: the picture would be drawn once at its old size.
    layout()->activate();
}

QLayout *ImagePreviewView::makeTexts()
{
    auto *prompt = new ClampedLabel{record.prompt, systemFont(14), ColorRole::onBackdrop, promptLines, this};
    auto *promptRow = new QHBoxLayout;
    promptRow->setContentsMargins(promptPadding, 0, promptPadding, 0);
    promptRow->addWidget(inFront(prompt));
    meta = new TextLabel{{}, {metaPixelSize, QFont::Normal, ColorRole::onBackdropSecondary}, this};
    meta->setAccessibleName(modelText(record) + timeText(record));
    auto *texts = new QVBoxLayout;
    texts->setSpacing(textSpacing);
    texts->addLayout(promptRow);
    texts->addWidget(inFront(meta), 0, Qt::AlignHCenter);
    return texts;
}

QLayout *ImagePreviewView::makeActionRow()
{
    auto *save = new GradientButton{u"square.and.arrow.down"_s, u"保存图片"_s, buttonShadowOpacity, this};
    auto *close = new GradientButton{u"xmark"_s, u"关闭预览"_s, buttonShadowOpacity, this};
    connect(save, &GradientButton::clicked, this, &ImagePreviewView::saveImage);
    connect(close, &GradientButton::clicked, this, [this] { onClose(); });
    setFocusProxy(save);
    auto *row = new QHBoxLayout;
    row->setContentsMargins(0, actionRowPadding, 0, 0);
    row->setSpacing(buttonSpacing);
    row->addStretch();
    row->addWidget(inFront(save));
    row->addWidget(inFront(close));
    row->addStretch();
    return row;
}

void ImagePreviewView::saveImage()
{
    if (const QImage image = record.image(); !image.isNull()) {
        exportCover(image, record.createdAt, panels, this);
    }
}

QSize ImagePreviewView::sizeHint() const
{
    return viewSize;
}

void ImagePreviewView::resizeEvent(QResizeEvent *event)
{
    ShadowGround::resizeEvent(event);
    fitContents();
}

void ImagePreviewView::paintEvent(QPaintEvent *event)
{
    Sheet::paintGround(*this, ground());
    ShadowGround::paintEvent(event);
}

void ImagePreviewView::mousePressEvent(QMouseEvent *event)
{
    pressedOnBackdrop = event->button() == Qt::LeftButton;
}

void ImagePreviewView::mouseReleaseEvent(QMouseEvent *event)
{
    const bool clicked = std::exchange(pressedOnBackdrop, false) && event->button() == Qt::LeftButton &&
                         rect().contains(event->position().toPoint());
    if (clicked && childAt(event->position().toPoint()) == nullptr) {
        onClose();
    }
}

} // namespace quilmora
