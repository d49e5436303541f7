#include "app/TopNavigationBar.h"

#include "app/NavTabButton.h"
#include "app/TabGroup.h"
#include "screens/common/LogoView.h"
#include "screens/common/TextLabel.h"

#include <QHBoxLayout>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

constexpr int barHeight = 56;
constexpr int sidePadding = 8;
constexpr int brandSpacing = 10;
constexpr int brandPadding = 20;
constexpr int balanceWidth = 100;
constexpr int smallestGap = 12;
constexpr int logoSide = 28;
constexpr double logoRadius = 6;

} // namespace

TopNavigationBar::TopNavigationBar(NavigationTab selectedTab, QWidget *parent) : QWidget{parent}
{
    setFixedHeight(barHeight);
    auto *row = new QHBoxLayout{this};
    row->setContentsMargins(sidePadding, 0, sidePadding, 0);
    row->setSpacing(0);
    row->addWidget(makeBrand());
    row->addItem(new QSpacerItem{smallestGap, 0, QSizePolicy::MinimumExpanding});
    row->addWidget(makeTabs(selectedTab));
    row->addItem(new QSpacerItem{0, 0, QSizePolicy::MinimumExpanding});
    // Stands against the brand, so that the tabs are near the middle of the bar. In a narrow window it gives
    // way.
    row->addItem(new QSpacerItem{balanceWidth, 0, QSizePolicy::Maximum});
}

QWidget *TopNavigationBar::makeBrand()
{
    auto *brand = new QWidget{this};
    auto *row = new QHBoxLayout{brand};
    row->setContentsMargins(brandPadding, 0, 0, 0);
    row->setSpacing(brandSpacing);
    row->addWidget(new LogoView{logoSide, logoRadius, brand});
    row->addWidget(new TextLabel{u"Quilmora"_s, {18, QFont::DemiBold}, brand});
    return brand;
}

QWidget *TopNavigationBar::makeTabs(NavigationTab selectedTab)
{
    auto *group = new TabGroup{this};
    for (const NavigationTab tab : NavigationTab::allCases()) {
        auto *button = new NavTabButton{tab, group};
        button->setChecked(tab == selectedTab);
        connect(button, &NavTabButton::chosen, this, [this, tab] { Q_EMIT tabChosen(tab); });
        group->layout()->addWidget(button);
    }
    return group;
}

} // namespace quilmora
