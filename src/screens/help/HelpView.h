#pragma once

#include "screens/help/Toast.h"
#include "ui/widgets/ElidedText.h"
#include "ui/widgets/LogoView.h"
#include "ui/widgets/PaintedButton.h"

#include <QWidget>

class QVBoxLayout;

namespace quilmora {

/// A text that can be clicked. The page draws the focus ring around it.
class ContactLine final : public PaintedButton
{
    Q_OBJECT

public:
    explicit ContactLine(const QString &text, QWidget *parent = nullptr);

    QSize sizeHint() const override { return m_text.size(QWIDGETSIZE_MAX); }
    QSize minimumSizeHint() const override { return {0, 0}; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override { return m_text.height(width); }

Q_SIGNALS:
    /// showsFocus() may have changed.
    void focusChanged();

protected:
    void paint(QPainter &painter) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    const ElidedText m_text;
};

/// The content of the help screen.
struct AboutInformation {
    QString version; ///< "1.0.0"
    QString email;
    QString website;
    LogoFiles logo{};
    std::chrono::milliseconds toastStay = Toast::usualStay;

    /// As configured for the build.
    static AboutInformation current();
};

/// The screen with the version and the addresses of the support. A click on an address copies it.
class HelpView final : public QWidget
{
    Q_OBJECT

public:
    explicit HelpView(const AboutInformation &contents = AboutInformation::current(),
                      QWidget *parent = nullptr);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    /// A click on it copies `value`.
    void addContactLine(QVBoxLayout &column, const QString &text, const QString &value);
    void copyToClipboard(const QString &text);

    Toast *m_toast;
};

} // namespace quilmora
