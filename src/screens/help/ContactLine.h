#pragma once

#include "screens/help/CenteredText.h"
#include "ui/widgets/PaintedButton.h"

namespace quilmora {

/// A text that can be clicked. The page draws the focus ring around it.
class ContactLine final : public PaintedButton
{
    Q_OBJECT

public:
    explicit ContactLine(const QString &text, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {0, 0}; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

Q_SIGNALS:
    /// showsFocus() may have changed.
    void focusChanged();

protected:
    void paint(QPainter &painter) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    const CenteredText m_line;
};

} // namespace quilmora
