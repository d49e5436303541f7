#pragma once

#include <QLineEdit>

namespace quilmora {

/// A text field that reports the preedit text of input methods, and that can be marked as invalid.
class TextField : public QLineEdit
{
    Q_OBJECT

public:
    explicit TextField(QWidget *parent = nullptr);

    /// The text with the preedit text, which is not part of text() yet.
    QString shownText() const;

    /// Until the text changes. Screen readers read it too.
    void setInvalid() { markInvalid(true); }

Q_SIGNALS:
    void shownTextChanged();

protected:
    void initStyleOption(QStyleOptionFrame *option) const override;
    void paintEvent(QPaintEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;

private:
    void markInvalid(bool isInvalid);

    QString m_preedit;
    bool m_invalid = false;
};

/// A text field for a secret: it shows dots, and neither the clipboard, nor input methods, nor assistive
/// programs get its text. Qt's own password field reports a text that is set to assistive programs.
class MaskedField final : public TextField
{
    Q_OBJECT

public:
    explicit MaskedField(QWidget *parent = nullptr);

    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

protected:
    /// Draws the dots itself, since the size of the bullet differs much between fonts.
    void paintEvent(QPaintEvent *event) override;

private:
    QRect textArea() const;
};

} // namespace quilmora
