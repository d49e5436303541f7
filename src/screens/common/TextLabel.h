#pragma once

#include "screens/common/Theme.h"

#include <QFont>
#include <QLabel>

namespace quilmora
{

/// A text in the system font and a colour of the theme. Texts are shown as they are: markup in them is not
/// interpreted.
class TextLabel : public QLabel
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TextLabel)

public:
    struct Style {
        int pixelSize;
        QFont::Weight weight = QFont::Normal;
        ColorRole color = ColorRole::primaryText;
    };

    TextLabel(const QString &text, Style style, QWidget *parent = nullptr);
    ~TextLabel() override = default;

protected:
    void changeEvent(QEvent *event) override;

private:
    void applyColor();

    const ColorRole colorRole;
};

} // namespace quilmora
