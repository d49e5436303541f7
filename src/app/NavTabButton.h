#pragma once

#include "app/NavigationTab.h"
#include "ui/widgets/OptionButton.h"

namespace quilmora {

/// The button of one tab; checked while its screen is visible.
class NavTabButton final : public OptionButton
{
    Q_OBJECT

public:
    explicit NavTabButton(NavigationTab tab, QWidget *parent = nullptr);

    NavigationTab tab() const { return m_tab; }
    QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paint(QPainter &painter) override;

private:
    const NavigationTab m_tab;
};

} // namespace quilmora
