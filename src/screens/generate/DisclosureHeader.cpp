#include "screens/generate/DisclosureHeader.h"

#include "screens/common/AccessiblePart.h"
#include "screens/common/FocusRing.h"
#include "screens/common/Fonts.h"
#include "screens/common/IconAndTitle.h"
#include "screens/common/PixelGrid.h"
#include "screens/common/Shapes.h"
#include "screens/common/Symbol.h"
#include "screens/common/Theme.h"
#include "screens/generate/DisclosureAccessible.h"

#include <QFontMetrics>
#include <QPainter>

#include <utility>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

constexpr int spacing = 6;
constexpr int rowHeight = 26;
constexpr int chevronSize = 10;

QFont titleFont()
{
    return systemFont(13, QFont::Medium);
}

} // namespace

DisclosureHeader::DisclosureHeader(QString icon, const QString &title, bool initiallyExpanded,
                                   QWidget *parent)
    : PaintedButton{parent},
      iconName{std::move(icon)},
      expanded{initiallyExpanded}
{
    DisclosureAccessible::install();
    setText(title);
    setAccessibleName(title);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(this, &DisclosureHeader::clicked, this, [this] {
        expanded = !expanded;
        update();
        // Qt sends no event of this state to the accessibility bus.
        announce(this, expanded ? u"已展开"_s : u"已收起"_s);
        Q_EMIT expandedChanged(expanded);
    });
}

QSize DisclosureHeader::sizeHint() const
{
    return {QFontMetrics{titleFont()}.horizontalAdvance(text()) + 80, rowHeight};
}

void DisclosureHeader::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    const Symbol icon{iconName, 13, QFont::Medium};
    const QSize face = iconAndTitle::size(&icon, text(), titleFont(), spacing);
    const QColor color = themeColor(ColorRole::primaryText);
    iconAndTitle::draw(painter, QRectF{0, 0, face.width() * 1.0, height() * 1.0}, &icon, text(), titleFont(),
                       spacing, color);
    const Symbol chevron{expanded ? u"chevron.up"_s : u"chevron.down"_s, chevronSize};
    chevron.draw(painter, QRectF{width() - chevron.extent() * 1.0, 0, chevron.extent() * 1.0, height() * 1.0},
                 color);
    if (showsFocus()) {
        drawFocusRing(painter, roundedRect(PixelGrid{painter}.aligned(rect()), 6));
    }
}

} // namespace quilmora
