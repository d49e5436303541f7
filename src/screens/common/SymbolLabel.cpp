#include "screens/common/SymbolLabel.h"

#include <QPainter>

#include <utility>

namespace quilmora
{

SymbolLabel::SymbolLabel(Symbol shown, ColorRole role, QWidget *parent)
    : QWidget{parent},
      symbol{std::move(shown)},
      color{role}
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SymbolLabel::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    symbol.draw(painter, rect(), themeColor(color));
}

} // namespace quilmora
