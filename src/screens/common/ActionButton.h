#pragma once

#include "screens/common/PaintedButton.h"
#include "screens/common/Symbol.h"

namespace quilmora
{

/// A push button with an optional symbol before its title.
class ActionButton final : public PaintedButton
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ActionButton)

public:
    enum class Kind {
        bordered,  ///< A control with a hairline border.
        prominent, ///< Filled with the accent colour.
        plainRed,  ///< Symbol and title alone, in red.
    };

    struct Look {
        Kind kind;
        int pixelSize;
        QFont::Weight weight = QFont::Normal;
        int spacing = 6;        ///< Between symbol and title.
        QSize padding = {0, 0}; ///< To the left and right, and above and below.
    };

    /// `iconName` may be empty.
    ActionButton(const QString &iconName, const QString &title, const Look &look, QWidget *parent = nullptr);
    ~ActionButton() override = default;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor faceColor() const;
    void paintBackground(QPainter &painter) const;
    QSize faceSize() const;

    const Look look;
    const QString iconName;
    const Symbol symbol;
};

} // namespace quilmora
