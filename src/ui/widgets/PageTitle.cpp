#include "ui/widgets/PageTitle.h"

#include "ui/theme/Fonts.h"

#include <QPainter>

#include <cmath>

namespace quilmora {

PageTitle::PageTitle(const QString &text, QWidget *parent) : TextLabel{text, {22, QFont::Bold}, parent} {}

void PageTitle::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.setPen(palette().color(QPalette::WindowText));
    // Rounded like the texts of buttons.
    painter.drawText(QPointF{0, std::round(baselineInRow(font(), height()))}, text());
}

} // namespace quilmora
