#pragma once

#include <QAbstractButton>

namespace quilmora
{

/// A button that its subclasses draw. It tells them whether to mark it as focused: whoever works by mouse
/// sees no mark on what was clicked. The Return key presses it like the space bar, and a word that is half
/// composed in a field is taken over before the button acts.
class PaintedButton : public QAbstractButton
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PaintedButton)

public:
    explicit PaintedButton(QWidget *parent);
    ~PaintedButton() override = default;

    /// Whether the button has the focus and got it by keyboard: by a key that moves the focus, or from the
    /// program while the user was last seen at the keyboard.
    bool showsFocus() const { return hasFocus() && focusByKeyboard; }

protected:
    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    bool focusByKeyboard = false;
};

} // namespace quilmora
