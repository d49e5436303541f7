#pragma once

#include <QAbstractButton>

namespace quilmora {

/// A button that its subclasses paint. It shows the focus ring only to users of the keyboard. Return presses
/// it like the space bar, and text that an input method composes is committed before the button acts.
class PaintedButton : public QAbstractButton
{
    Q_OBJECT

public:
    PaintedButton(const QString &accessibleName, QWidget *parent);

    bool showsFocus() const { return hasFocus() && m_focusByKeyboard; }

protected:
    /// With antialiasing.
    virtual void paint(QPainter &painter) = 0;

    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    bool m_focusByKeyboard = false;
};

/// One of the exclusive choices among the children of a widget.
class OptionButton : public PaintedButton
{
    Q_OBJECT

public:
    OptionButton(const QString &accessibleName, QWidget *parent);

Q_SIGNALS:
    /// It was checked, by mouse, keyboard or screen reader (which toggles without a click).
    void chosen();
};

} // namespace quilmora
