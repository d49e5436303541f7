#pragma once

#include "app/NavigationTab.h"
#include "ui/widgets/PaintedButton.h"

#include <QWidget>

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

/// The bar above every screen: the brand on the left and the tabs in the middle.
class TopNavigationBar final : public QWidget
{
    Q_OBJECT

public:
    explicit TopNavigationBar(NavigationTab selectedTab, QWidget *parent = nullptr);

Q_SIGNALS:
    /// The user chose another tab.
    void tabChosen(quilmora::NavigationTab tab);

private:
    QWidget *makeBrand();
    QWidget *makeTabs(NavigationTab selectedTab);
};

} // namespace quilmora
