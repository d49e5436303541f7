#pragma once

#include "app/NavigationTab.h"

#include <QWidget>

namespace quilmora {

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
