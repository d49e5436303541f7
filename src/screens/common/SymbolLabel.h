#pragma once

#include "screens/common/Symbol.h"
#include "screens/common/Theme.h"

#include <QWidget>

namespace quilmora
{

/// A symbol that stands by itself.
class SymbolLabel final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SymbolLabel)

public:
    SymbolLabel(Symbol symbol, ColorRole color, QWidget *parent = nullptr);
    ~SymbolLabel() override = default;

    QSize sizeHint() const override { return {symbol.extent(), symbol.extent()}; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const Symbol symbol;
    const ColorRole color;
};

} // namespace quilmora
