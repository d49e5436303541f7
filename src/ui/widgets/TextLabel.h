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

/// The title of a screen. Its characters, not its line, are centered vertically: at this size the two are
/// pixels apart, which is visible beside a button.
class PageTitle final : public TextLabel
{
    Q_OBJECT

public:
    explicit PageTitle(const QString &text, QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};

/// A red line that is visible while it has a message. Screen readers announce each message once.
class ErrorLine final : public TextLabel
{
    Q_OBJECT

public:
    explicit ErrorLine(int pixelSize, QWidget *parent = nullptr);

    /// An empty message hides the line.
    void setMessage(const QString &message);
};

} // namespace quilmora
