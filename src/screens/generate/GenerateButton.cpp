#include "screens/generate/GenerateButton.h"

#include "ui/style/ButtonFace.h"
#include "ui/theme/Fonts.h"
#include "ui/theme/Measures.h"
#include "ui/theme/Theme.h"

#include <QFontMetrics>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

constexpr int verticalPadding = 14;
constexpr double disabledOpacity = 0.5;

} // namespace

GenerateButton::GenerateButton(QWidget *parent) : PaintedButton{u"开始生成封面"_s, parent}
{
    setText(accessibleName());
    setFont(systemFont(15, QFont::Bold));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize GenerateButton::sizeHint() const
{
    const QFontMetrics metrics{font()};
    return {metrics.horizontalAdvance(text()) + 2 * verticalPadding, metrics.height() + 2 * verticalPadding};
}

void GenerateButton::paint(QPainter &painter)
{
    painter.setOpacity(isEnabled() ? 1.0 : disabledOpacity);
    ButtonFace{
        .kind = ButtonFace::Kind::gradient, .cornerRadius = measures::cardRadius, .isFocused = showsFocus()}
        .draw(painter, rect());
    painter.setFont(font());
    painter.setPen(themeColor(ColorRole::onAccent));
    painter.drawText(rect(), Qt::AlignCenter, text());
}

} // namespace quilmora
