#pragma once

#include "screens/common/PaintedButton.h"
#include "screens/help/CentredText.h"

namespace quilmora
{

/// A line of text that acts wherever in its rectangle it is clicked. It is as large as its text: the mark of
/// the keyboard focus lies around it, and is drawn by the page.
class ContactLine final : public PaintedButton
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ContactLine)

public:
    explicit ContactLine(const QString &text, QWidget *parent = nullptr);
    ~ContactLine() override = default;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {0, 0}; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

Q_SIGNALS:
    /// showsFocus() may have changed.
    void focusChanged();

protected:
    void paintEvent(QPaintEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    const CentredText line;
};

} // namespace quilmora
