#include "ui/widgets/SymbolLabel.h"

#include <QPainter>

#include <utility>

namespace quilmora {

SymbolLabel::SymbolLabel(Symbol shown, ColorRole role, QWidget *parent)
    : QWidget{parent},
      m_symbol{std::move(shown)},
      m_color{role}
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SymbolLabel::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    m_symbol.draw(painter, rect(), themeColor(m_color));
}

} // namespace quilmora
