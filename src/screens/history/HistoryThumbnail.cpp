#include "screens/history/HistoryThumbnail.h"

#include "screens/history/HistoryModel.h"
#include "screens/history/ThumbnailCache.h"
#include "ui/style/FocusRing.h"
#include "ui/theme/Fonts.h"
#include "ui/theme/PixelSnapper.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/Symbol.h"
#include "ui/theme/Theme.h"
#include "ui/widgets/ElidedText.h"

#include <QFontMetrics>
#include <QHash>
#include <QPainter>
#include <QStyleOptionViewItem>

#include <cmath>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

template <typename Draw>
QPixmap drawn(QSize pixels, double devicePixelRatio, Draw draw)
{
    QPixmap pixmap{pixels};
    pixmap.setDevicePixelRatio(devicePixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter{&pixmap};
    painter.setRenderHint(QPainter::Antialiasing);
    draw(painter, QRectF{QPointF{}, pixmap.deviceIndependentSize()});
    return pixmap;
}

constexpr int spacing = 6;
constexpr int promptPixelSize = 12;
constexpr int promptLines = 2;
constexpr int footerPixelSize = 10;
constexpr int footerSpacing = 8;
constexpr int placeholderPixelSize = 30;

void paintPicture(QPainter &painter, const QRect &square, const ThumbnailCache::Thumbnail &picture)
{
    QSizeF size = picture.pixmap.deviceIndependentSize();
    const bool scaled = picture.state == ThumbnailCache::State::outdated;
    if (scaled) {
        size.scale(square.size(), Qt::KeepAspectRatio);
    }
    // Without it Qt copies unscaled pictures pixel by pixel.
    painter.setRenderHint(QPainter::SmoothPixmapTransform, scaled);
    const QPointF corner = QRectF{square}.center() - QPointF{size.width(), size.height()} / 2;
    painter.drawPixmap(QRectF{PixelSnapper{painter}.aligned(corner), size}, picture.pixmap,
                       picture.pixmap.rect());
}

/// Shaping would select other digits, lower by a pixel, beside Latin letters.
QFont footerFont()
{
    QFont font = systemFont(footerPixelSize);
    font.setStyleStrategy(QFont::PreferNoShaping);
    return font;
}

int paintPrompt(QPainter &painter, const QRect &place, const QString &prompt)
{
    const ElidedText text{prompt, systemFont(promptPixelSize), promptLines};
    return text.draw(painter, place, themeColor(ColorRole::secondaryText));
}

/// Whether a prompt is certainly too long for one line, without a layout. Chinese characters are as wide as
/// high, others hardly narrower than a quarter of that.
bool isWiderThan(int width, const QString &prompt)
{
    int quarters = 4 * width / promptPixelSize;
    for (const QChar character : prompt) {
        const bool isChinese = character >= u'\u3000' && character <= u'\u9fff';
        quarters -= isChinese ? 4 : 1;
        if (quarters < 0) {
            return true;
        }
    }
    return false;
}

void paintFooter(QPainter &painter, const QRect &place, const HistoryRecord &record)
{
    const QFont font = footerFont();
    const QFontMetrics metrics{font};
    const QString time = HistoryModel::timeText(record);
    const int timeWidth = metrics.horizontalAdvance(time);
    const QRect left = place.adjusted(0, 0, -timeWidth - footerSpacing, 0);
    // Drawn alike for the same baseline.
    const QColor color = themeColor(ColorRole::tertiaryText);
    ElidedText{record.modelID, font, 1}.draw(painter, left, color);
    ElidedText{time, font, 1, Qt::AlignRight}.draw(painter, place, color);
}

} // namespace

void TileFrame::prepare(QSizeF size, double lineWidth, double devicePixelRatio)
{
    const Look wanted{(size * devicePixelRatio).toSize(), lineWidth, devicePixelRatio,
                      themeColor(ColorRole::controlBackground), themeColor(ColorRole::tileBorder)};
    if (m_look == wanted) {
        return;
    }
    m_look = wanted;
    const auto insideBy = [this](const QRectF &square, double inset) {
        return continuousRoundedRect(square.adjusted(inset, inset, -inset, -inset), m_radius - inset);
    };
    // The outer half of the line is visible beside the background; in whole pixels, at least one.
    const double outerHalf = std::ceil(lineWidth * devicePixelRatio / 2) / devicePixelRatio;
    m_background = drawn(m_look.pixels, devicePixelRatio, [&](QPainter &painter, const QRectF &square) {
        painter.fillPath(insideBy(square, outerHalf), m_look.backgroundColor);
    });
    m_outline = drawn(m_look.pixels, devicePixelRatio, [&](QPainter &painter, const QRectF &square) {
        // Filled, so that its outer edge is exactly that of the picture.
        QPainterPath line = insideBy(square, 0);
        line.addPath(insideBy(square, lineWidth));
        painter.fillPath(line, m_look.lineColor);
    });
}

HistoryThumbnail::HistoryThumbnail(const HistoryModel &model, ThumbnailCache &thumbnails, QObject *parent)
    : QAbstractItemDelegate{parent},
      m_model{model},
      m_thumbnails{thumbnails}
{
}

std::vector<int> HistoryThumbnail::textHeights(const QList<HistoryRecord> &records, int width)
{
    const QFont promptFont = systemFont(promptPixelSize);
    const int others = 2 * spacing + ElidedText::heightOfLines(footerFont(), 1);
    const int full = ElidedText::heightOfLines(promptFont, promptLines) + others;
    // Covers without a database row all have the same short prompt.
    QHash<QString, int> heights;
    std::vector<int> result;
    result.reserve(static_cast<std::size_t>(records.size()));
    for (const HistoryRecord &record : records) {
        if (isWiderThan(width, record.prompt)) {
            result.push_back(full);
            continue;
        }
        auto height = heights.find(record.prompt);
        if (height == heights.end()) {
            const ElidedText text{record.prompt, promptFont, promptLines};
            height = heights.insert(record.prompt, text.height(width) + others);
        }
        result.push_back(*height);
    }
    return result;
}

void HistoryThumbnail::paintSquare(QPainter &painter, const QRect &square, const QString &path,
                                   bool focused) const
{
    const PixelSnapper grid{painter};
    const QRectF background = grid.aligned(square);
    m_frame.prepare(background.size(), grid.borderWidth(), painter.device()->devicePixelRatioF());
    painter.drawPixmap(background.topLeft(), m_frame.background());
    const auto picture =
        m_thumbnails.find(path, {square.width(), cornerRadius, painter.device()->devicePixelRatioF()});
    if (!picture.pixmap.isNull()) {
        paintPicture(painter, square, picture);
    } else if (picture.state == ThumbnailCache::State::absent) {
        Symbol{u"photo"_s, placeholderPixelSize}.draw(painter, square, themeColor(ColorRole::tertiaryText));
    }
    painter.drawPixmap(background.topLeft(), m_frame.outline());
    if (focused) {
        drawFocusRing(painter, continuousRoundedRect(background, cornerRadius));
    }
}

void HistoryThumbnail::paint(QPainter *painter, const QStyleOptionViewItem &option,
                             const QModelIndex &index) const
{
    const HistoryRecord &record = m_model.record(index.row());
    const QRect tile = option.rect;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const QRect square{tile.topLeft(), QSize{tile.width(), tile.width()}};
    paintSquare(*painter, square, record.imagePath, option.state.testFlag(QStyle::State_HasFocus));

    QRect below = tile.adjusted(0, square.height() + spacing, 0, 0);
    below.translate(0, paintPrompt(*painter, below, record.prompt) + spacing);
    below.setHeight(ElidedText::heightOfLines(footerFont(), 1));
    paintFooter(*painter, below, record);
    painter->restore();
}

QSize HistoryThumbnail::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const int width = option.rect.width();
    return {width, width + textHeights({m_model.record(index.row())}, width).front()};
}

} // namespace quilmora
