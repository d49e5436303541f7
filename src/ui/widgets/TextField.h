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

} // namespace quilmora
