#include "screens/generate/GenerateButton.h"

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

constexpr int verticalPadding = 14;
constexpr double cornerRadius = 10;
constexpr double disabledOpacity = 0.5;

} // namespace

GenerateButton::GenerateButton(QWidget *parent) : PaintedButton{parent}
{
    setText(u"开始生成封面"_s);
    setAccessibleName(text());
    setFont(systemFont(15, QFont::Bold));
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize GenerateButton::sizeHint() const
{
    const QFontMetrics metrics{font()};
    return {metrics.horizontalAdvance(text()) + 2 * verticalPadding, metrics.height() + 2 * verticalPadding};
}

void GenerateButton::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? 1.0 : disabledOpacity);
    const QPainterPath outline = continuousRoundedRect(PixelGrid{painter}.aligned(rect()), cornerRadius);
    painter.fillPath(outline, Theme::accentGradient(rect()));
    if (showsFocus()) {
        drawFocusRing(painter, outline, ColorRole::onAccent);
    }
    painter.setFont(font());
    painter.setPen(themeColor(ColorRole::onAccent));
    painter.drawText(rect(), Qt::AlignCenter, text());
}

} // namespace quilmora
