#pragma once

#include <QSize>

class QColor;
class QFont;
class QPainter;
class QRectF;
class QString;

namespace quilmora
{

class Symbol;

/// The face of most buttons: a symbol and a title beside it, centred together.
namespace iconAndTitle
{

/// The space that the two take. `symbol` may be null.
QSize size(const Symbol *symbol, const QString &title, const QFont &font, int spacing);

/// Draws the two into the middle of `bounds`.
void draw(QPainter &painter, const QRectF &bounds, const Symbol *symbol, const QString &title,
          const QFont &font, int spacing, const QColor &color);

} // namespace iconAndTitle
} // namespace quilmora
