#include "screens/common/MenuItem.h"

#include "screens/common/Fonts.h"
#include "screens/common/PixelGrid.h"
#include "screens/common/Shapes.h"
#include "screens/common/Theme.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

constexpr int leastHeight = 22;
constexpr int separatorHeight = 11;
constexpr double highlightRadius = 4;
constexpr int inset = 9; ///< Of texts and separators.
constexpr int gapBeforeKey = 24;
constexpr int markRoom = 16; ///< Beside the title, for a check mark or the arrow of a menu further on.

/// "撤销(&U)" is shown as 撤销, "&Undo" as Undo, and "&&" as the character itself.
QString withoutMnemonic(QString text)
{
    static const QRegularExpression added{uR"(\s*\(&[^&]\)(?=(\.\.\.|…)?$))"_s};
    static const QRegularExpression marked{u"&(.)"_s};
    return text.remove(added).replace(marked, u"\\1"_s);
}

void drawMark(QPainter &painter, const QList<QPointF> &points, const QColor &color)
{
    painter.setPen(QPen{color, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin});
    painter.drawPolyline(points);
}

} // namespace

MenuItem::MenuItem(const QStyleOptionMenuItem &menuOption)
    : option{menuOption},
      title{withoutMnemonic(option.text.section(u'\t', 0, 0))},
      key{option.text.section(u'\t', 1)}
{
}

int MenuItem::roomBefore() const
{
    return inset + (option.menuHasCheckableItems ? markRoom : 0);
}

int MenuItem::roomBehind() const
{
    return inset + (option.menuItemType == QStyleOptionMenuItem::SubMenu ? markRoom : 0);
}

QSize MenuItem::size() const
{
    if (isSeparator()) {
        return {2 * inset, separatorHeight};
    }
    const QFontMetrics metrics{option.font};
    const int width = roomBefore() + metrics.horizontalAdvance(title) + roomBehind();
    return {width + (key.isEmpty() ? 0 : gapBeforeKey), std::max(leastHeight, metrics.height() + 2)};
}

void MenuItem::draw(QPainter &painter) const
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (isSeparator()) {
        drawSeparator(painter);
    } else {
        drawCommand(painter);
    }
    painter.restore();
}

void MenuItem::drawSeparator(QPainter &painter) const
{
    const PixelGrid grid{painter};
    const QRectF bounds = QRectF{option.rect}.adjusted(inset, 0, -inset, 0);
    const double width = grid.lineWidth(1);
    const QPointF start = grid.aligned(QPointF{bounds.left(), bounds.center().y() - width / 2});
    painter.fillRect(QRectF{start, QSizeF{bounds.width(), width}}, themeColor(ColorRole::separator));
}

void MenuItem::drawCommand(QPainter &painter) const
{
    const bool isEnabled = option.state.testFlag(QStyle::State_Enabled);
    const bool isHighlighted = isEnabled && option.state.testFlag(QStyle::State_Selected);
    const auto colorOf = [&](ColorRole usual) {
        return themeColor(isHighlighted ? ColorRole::onAccent : isEnabled ? usual : ColorRole::tertiaryText);
    };
    if (isHighlighted) {
        painter.fillPath(roundedRect(PixelGrid{painter}.aligned(option.rect), highlightRadius),
                         themeColor(ColorRole::accent));
    }
    const QRect texts = option.rect.adjusted(roomBefore(), 0, -roomBehind(), 0);
    painter.setFont(option.font);
    painter.setPen(colorOf(ColorRole::primaryText));
    const QPointF middle{0, texts.top() + baselineInRow(option.font, texts.height())};
    const double baseline = PixelGrid{painter}.aligned(middle).y();
    painter.drawText(QPointF{texts.left() * 1.0, baseline}, title);
    painter.setPen(colorOf(ColorRole::secondaryText));
    const double keyWidth = QFontMetricsF{option.font}.horizontalAdvance(key);
    painter.drawText(QPointF{texts.left() + texts.width() - keyWidth, baseline}, key);

    const QRectF bounds{option.rect};
    if (option.checked) {
        const QPointF foot{bounds.left() + inset + 3.5, bounds.center().y() + 3.5};
        drawMark(painter, {foot + QPointF{-3, -3.5}, foot, foot + QPointF{5, -8}},
                 colorOf(ColorRole::primaryText));
    }
    if (option.menuItemType == QStyleOptionMenuItem::SubMenu) {
        const QPointF tip{bounds.right() - inset, bounds.center().y()};
        drawMark(painter, {tip + QPointF{-4, -4}, tip, tip + QPointF{-4, 4}},
                 colorOf(ColorRole::primaryText));
    }
}

} // namespace quilmora
