#include "screens/history/ElidedLabel.h"

#include "ui/accessibility/Accessibility.h"

#include <QFontMetrics>
#include <QPainter>
#include <QRegion>

namespace quilmora {

ElidedLabel::ElidedLabel(const QString &text, const QFont &font, ColorRole color, int maximumLines,
                         QWidget *parent)
    : QWidget{parent},
      m_text{text, font, maximumLines, Qt::AlignHCenter},
      m_color{color}
{
    setFont(font);
    setAccessibleRole(this, {QAccessible::StaticText});
    setAccessibleName(text);
    QSizePolicy policy{QSizePolicy::Expanding, QSizePolicy::Preferred};
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

QSize ElidedLabel::sizeHint() const { return {0, ElidedText::heightOfLines(font(), 1)}; }

void ElidedLabel::resizeEvent(QResizeEvent * /*event*/)
{
    constexpr int overhang = 2; // Of glyphs beyond their advance.
    const QFontMetrics metrics{font()};
    QRegion text;
    QRect row{0, 0, width(), ElidedText::heightOfLines(font(), 1)};
    for (const QString &line : m_text.lines(width())) {
        const int beside = (width() - metrics.horizontalAdvance(line)) / 2 - overhang;
        text += row.adjusted(beside, 0, -beside, 0);
        row.translate(0, row.height());
    }
    setMask(text);
}

void ElidedLabel::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    m_text.draw(painter, rect(), themeColor(m_color));
}

} // namespace quilmora
