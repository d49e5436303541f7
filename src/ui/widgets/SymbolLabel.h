#pragma once

#include "ui/theme/Symbol.h"
#include "ui/theme/Theme.h"

#include <QWidget>

namespace quilmora {

/// Shows a symbol.
class SymbolLabel final : public QWidget
{
    Q_OBJECT

public:
    SymbolLabel(Symbol symbol, ColorRole color, QWidget *parent = nullptr);

    QSize sizeHint() const override { return {m_symbol.extent(), m_symbol.extent()}; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const Symbol m_symbol;
    const ColorRole m_color;
};

} // namespace quilmora
