#pragma once

#include "app/NavigationTab.h"
#include "screens/common/OptionButton.h"

namespace quilmora
{

/// The button of one tab; checked while its screen is shown.
class NavTabButton final : public OptionButton
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NavTabButton)

public:
    explicit NavTabButton(NavigationTab tab, QWidget *parent = nullptr);
    ~NavTabButton() override = default;

    NavigationTab tab() const { return navigationTab; }
    QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    const NavigationTab navigationTab;
};

} // namespace quilmora
