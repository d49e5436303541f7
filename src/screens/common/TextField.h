#pragma once

#include <QLineEdit>

namespace quilmora
{

/// A text field that says what an input method is composing in it, and that can be marked as invalid.
class TextField : public QLineEdit
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TextField)

public:
    explicit TextField(QWidget *parent = nullptr);
    ~TextField() override = default;

    /// The field's text with what is being composed, which is not part of text() yet.
    QString shownText() const;

    /// Marks the text as invalid, for screen readers too, until it changes.
    void setInvalid() { markInvalid(true); }

Q_SIGNALS:
    void shownTextChanged();

protected:
    void initStyleOption(QStyleOptionFrame *option) const override;
    void paintEvent(QPaintEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;

private:
    void markInvalid(bool isInvalid);

    QString composed;
    bool invalid = false;
};

} // namespace quilmora
