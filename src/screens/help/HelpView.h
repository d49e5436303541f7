#pragma once

#include "screens/help/Toast.h"
#include "ui/theme/LogoImage.h"

#include <QWidget>

class QVBoxLayout;

namespace quilmora {

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
