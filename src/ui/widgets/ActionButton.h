#pragma once

#include "ui/style/ButtonFace.h"
#include "ui/theme/Measures.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/Symbol.h"
#include "ui/widgets/PaintedButton.h"
#include "ui/widgets/ShadowHost.h"

#include <optional>

namespace quilmora {

/// A push button with an optional symbol before its title. The title of a plain one is red.
class ActionButton : public PaintedButton
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
        double cornerRadius = measures::controlRadius;
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

/// A capsule on the accent gradient with a symbol and a title. A ShadowHost as parent draws its shadow.
class GradientButton final : public ActionButton, public ShadowSource
{
    Q_OBJECT

public:
    /// `shadowOpacity` from 0 to 1.
    GradientButton(const QString &iconName, const QString &title, double shadowOpacity,
                   QWidget *parent = nullptr);

    Shadow shadow() const override;
    QPainterPath outline() const override { return continuousRoundedRect(rect(), height() / 2.0); }

protected:
    bool hitButton(const QPoint &position) const override { return outline().contains(position); }

private:
    const double m_shadowOpacity;
};

} // namespace quilmora
