#pragma once

#include "ui/theme/Theme.h"

#include <QFont>
#include <QLabel>

namespace quilmora {

/// A plain text in the system font and a color of the theme.
class TextLabel : public QLabel
{
    Q_OBJECT

public:
    struct Style {
        int pixelSize;
        QFont::Weight weight = QFont::Normal;
        ColorRole color = ColorRole::primaryText;
    };

    TextLabel(const QString &text, Style style, QWidget *parent = nullptr);

protected:
    void changeEvent(QEvent *event) override;

private:
    void applyColor();

    const ColorRole m_color;
};

/// A label whose text screen readers announce when it is shown, followed by `description`.
TextLabel *makeNotification(const QString &text, const QString &description, TextLabel::Style style,
                            QWidget *parent);

} // namespace quilmora
