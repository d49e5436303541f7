#pragma once

#include "ui/style/ButtonFace.h"
#include "ui/theme/Symbol.h"
#include "ui/widgets/PaintedButton.h"

#include <optional>

namespace quilmora {

/// A push button with an optional symbol before its title. The title of a plain one is red.
class ActionButton final : public PaintedButton
{
    Q_OBJECT

public:
    using Kind = ButtonFace::Kind;

    struct Look {
        Kind kind;
        int pixelSize;
        QFont::Weight weight = QFont::Normal;
        int spacing = 6;        ///< Between symbol and title.
        QSize padding = {0, 0}; ///< To the left and right, and above and below.
    };

    /// `iconName` may be empty.
    ActionButton(const QString &iconName, const QString &title, const Look &look, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paint(QPainter &painter) override;

private:
    QColor textColor() const;
    const Symbol *symbol() const { return m_symbol ? &*m_symbol : nullptr; }

    const Look m_look;
    std::optional<Symbol> m_symbol;
};

} // namespace quilmora
