#pragma once

#include <QSize>

class QColor;
class QFont;
class QPainter;
class QRectF;
class QString;

namespace quilmora {

class Symbol;

/// A symbol and a title beside it, centered together.
namespace iconAndTitle {

/// `symbol` may be null.
QSize size(const Symbol *symbol, const QString &title, const QFont &font, int spacing);

void draw(QPainter &painter, const QRectF &bounds, const Symbol *symbol, const QString &title,
          const QFont &font, int spacing, const QColor &color);

} // namespace iconAndTitle
} // namespace quilmora
