#pragma once

#include "screens/help/HelpContents.h"

#include <QWidget>

class QVBoxLayout;

namespace quilmora
{

/// The screen that says which program this is and how to reach its support. A click on an address copies it.
class HelpView final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HelpView)

public:
    explicit HelpView(const HelpContents &contents = HelpContents::ofThisBuild(), QWidget *parent = nullptr);
    ~HelpView() override = default;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    /// Adds a line that copies `value`.
    void addContactLine(QVBoxLayout &column, const QString &text, const QString &value);
    void copyToClipboard(const QString &text);

    Toast *toast;
};

} // namespace quilmora
