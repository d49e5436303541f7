#include "ui/widgets/IconAndTitle.h"

#include "ui/theme/Symbol.h"

#include <QColor>
#include <QFont>
#include <QFontMetrics>
#include <QPainter>
#include <QRectF>
#include <QString>

#include <algorithm>

namespace quilmora::iconAndTitle {

QSize size(const Symbol *symbol, const QString &title, const QFont &font, int spacing)
{
    const QFontMetrics metrics{font};
    const int iconSide = symbol == nullptr ? 0 : symbol->extent();
    return {metrics.horizontalAdvance(title) + (symbol == nullptr ? 0 : iconSide + spacing),
            std::max(metrics.height(), iconSide)};
}

void draw(QPainter &painter, const QRectF &bounds, const Symbol *symbol, const QString &title,
          const QFont &font, int spacing, const QColor &color)
{
    const QSize face = size(symbol, title, font, spacing);
    QRectF rest{bounds.x() + (bounds.width() - face.width()) / 2, bounds.y(),
                static_cast<double>(face.width()), bounds.height()};
    if (symbol != nullptr) {
        const QRectF iconBounds{rest.x(), rest.y(), static_cast<double>(symbol->extent()), rest.height()};
        symbol->draw(painter, iconBounds, color);
        rest.setLeft(iconBounds.right() + spacing);
    }
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(rest, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, title);
}

} // namespace quilmora::iconAndTitle
