#include "app/TopNavigationBar.h"

#include "ui/accessibility/Accessibility.h"
#include "ui/style/ButtonFace.h"
#include "ui/theme/Fonts.h"
#include "ui/theme/Measures.h"
#include "ui/theme/PixelSnapper.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/Symbol.h"
#include "ui/theme/Theme.h"
#include "ui/widgets/IconAndTitle.h"
#include "ui/widgets/LogoView.h"
#include "ui/widgets/TextLabel.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

constexpr int pixelSize = 13;
constexpr QSize padding{14, 8};
constexpr double cornerRadius = 7;

Symbol symbolOf(NavigationTab tab) { return {tab.iconName(), pixelSize, QFont::Medium}; }

constexpr int barHeight = 56;
constexpr int sidePadding = 8;
constexpr int brandSpacing = 10;
constexpr int brandPadding = 20;
constexpr int balanceWidth = 100;
constexpr int smallestGap = 12;
constexpr int logoSide = 28;
constexpr double logoRadius = 6;
constexpr int tabSpacing = 4;
constexpr int tabPadding = 4;

/// The background of the tab buttons. The arrow keys move the focus between them.
class TabGroup final : public QWidget
{
public:
    explicit TabGroup(QWidget *parent) : QWidget{parent}
    {
        setAccessibleRole(this, {QAccessible::Grouping});
        setAccessibleName(u"导航"_s);
        setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
        auto *row = new QHBoxLayout{this};
        row->setContentsMargins(tabPadding, tabPadding, tabPadding, tabPadding);
        row->setSpacing(tabSpacing);
    }

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        const bool forward = event->key() == Qt::Key_Right || event->key() == Qt::Key_Down;
        const bool backward = event->key() == Qt::Key_Left || event->key() == Qt::Key_Up;
        const int next = layout()->indexOf(focusWidget()) + (forward ? 1 : -1);
        if (QLayoutItem *item = layout()->itemAt(next); item != nullptr && (forward || backward)) {
            item->widget()->setFocus(forward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
        } else {
            QWidget::keyPressEvent(event);
        }
    }

    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter{this};
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillPath(continuousRoundedRect(PixelSnapper{painter}.aligned(rect()), measures::cardRadius),
                         themeColor(ColorRole::controlBackground));
    }
};

} // namespace

NavTabButton::NavTabButton(NavigationTab tab, QWidget *parent)
    : OptionButton{tab.rawValue(), parent},
      m_tab{tab}
{
    setFont(systemFont(pixelSize, QFont::Medium));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize NavTabButton::sizeHint() const
{
    const Symbol symbol = symbolOf(m_tab);
    return iconAndTitle::size(&symbol, m_tab.rawValue(), font(), measures::iconSpacing) + 2 * padding;
}

void NavTabButton::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        // For the group of tabs; QAbstractButton would also select the next tab.
        event->ignore();
        return;
    default:
        OptionButton::keyPressEvent(event);
    }
}

void NavTabButton::paint(QPainter &painter)
{
    ButtonFace{.kind = isChecked() ? ButtonFace::Kind::prominent : ButtonFace::Kind::plain,
               .cornerRadius = cornerRadius,
               .isHovered = !isChecked() && underMouse(),
               .isFocused = showsFocus()}
        .draw(painter, rect());
    const Symbol symbol = symbolOf(m_tab);
    iconAndTitle::draw(painter, rect(), &symbol, m_tab.rawValue(), font(), measures::iconSpacing,
                       themeColor(isChecked() ? ColorRole::onAccent : ColorRole::primaryText));
}

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
    // Balances the brand, as far as there is room, so that the tabs are near the center.
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
