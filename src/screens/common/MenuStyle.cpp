#include "screens/common/MenuStyle.h"

#include "screens/common/Fonts.h"
#include "screens/common/MenuItem.h"
#include "screens/common/MenuShadow.h"
#include "screens/common/Theme.h"
#include "screens/common/WindowGround.h"

#include <QMenu>
#include <QStyleFactory>
#include <QStyleOption>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

constexpr int padding = 5;
constexpr int textSize = 13;

/// Lists that open from other controls ask for the same pieces.
bool isMenu(const QWidget *widget)
{
    return qobject_cast<const QMenu *>(widget) != nullptr;
}

} // namespace

MenuStyle::MenuStyle() : QProxyStyle{QStyleFactory::create(u"Fusion"_s)} {}

void MenuStyle::polish(QWidget *widget)
{
    QProxyStyle::polish(widget);
    if (isMenu(widget)) {
        widget->setFont(systemFont(textSize));
        widget->setAttribute(Qt::WA_TranslucentBackground, windowGround::canBeTranslucent());
        QWidget *owner = widget->parentWidget();
        // A menu that opens from another has none.
        if (owner != nullptr && !isMenu(owner->window())) {
            new MenuShadow{*widget, owner->window()};
        }
    }
}

void MenuStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                              const QWidget *widget) const
{
    if (element == PE_PanelMenu && isMenu(widget)) {
        const bool isRound = widget->testAttribute(Qt::WA_TranslucentBackground);
        windowGround::draw(*painter, option->rect, isRound ? windowGround::menuRadius : 0,
                           themeColor(ColorRole::menuBackground));
        return;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void MenuStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                            const QWidget *widget) const
{
    const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
    if (element == CE_MenuEmptyArea && isMenu(widget)) {
        return;
    }
    if (element == CE_MenuItem && item != nullptr && isMenu(widget)) {
        MenuItem{*item}.draw(*painter);
        return;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

QSize MenuStyle::sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                                  const QWidget *widget) const
{
    const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
    if (type == CT_MenuItem && item != nullptr && isMenu(widget)) {
        return MenuItem{*item}.size();
    }
    return QProxyStyle::sizeFromContents(type, option, contents, widget);
}

int MenuStyle::pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const
{
    if (isMenu(widget)) {
        switch (metric) {
        case PM_MenuHMargin:
        case PM_MenuVMargin:
            return padding;
        case PM_MenuPanelWidth:
            // The border belongs to the panel.
            return 0;
        default:
            break;
        }
    }
    return QProxyStyle::pixelMetric(metric, option, widget);
}

int MenuStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                         QStyleHintReturn *returnData) const
{
    switch (hint) {
    case SH_Menu_AllowActiveAndDisabled:
    case SH_Menu_Mask:
        return 0;
    default:
        return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
}

} // namespace quilmora
