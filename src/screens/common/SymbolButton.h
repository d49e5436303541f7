#pragma once

#include "screens/common/PaintedButton.h"
#include "screens/common/Symbol.h"
#include "screens/common/Theme.h"

namespace quilmora
{

/// A symbol that can be pressed, without any frame.
class SymbolButton final : public PaintedButton
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SymbolButton)

public:
    /// `accessibleName` is what screen readers say.
    SymbolButton(Symbol symbol, ColorRole color, const QString &accessibleName, QWidget *parent = nullptr);
    ~SymbolButton() override = default;

    QSize sizeHint() const override { return {symbol.extent(), symbol.extent()}; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const Symbol symbol;
    const ColorRole color;
};

} // namespace quilmora
