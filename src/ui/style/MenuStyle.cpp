#include "ui/style/MenuStyle.h"

#include "ui/style/PopupBackground.h"
#include "ui/theme/Fonts.h"
#include "ui/theme/Measures.h"
#include "ui/theme/PixelSnapper.h"
#include "ui/theme/Shadow.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/Theme.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QMenu>
#include <QPainter>
#include <QRegularExpression>
#include <QStyleFactory>
#include <QStyleOption>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

Shadow menuShadow()
{
    constexpr double blurRadius = 12;
    constexpr QPointF offset{0, 4};
    return {themeColor(ColorRole::sheetShadow), blurRadius, offset};
}

constexpr int padding = 5;
constexpr int textSize = 13;
constexpr int minimumItemHeight = 22;
constexpr int separatorHeight = 11;
constexpr double highlightRadius = 4;
constexpr int inset = 9; ///< Of texts and separators.
constexpr int gapBeforeShortcut = 24;
constexpr int markWidth = 16; ///< Of a check mark or the arrow of a submenu.

/// "撤销(&U)" is shown as 撤销, "&Undo" as Undo, and "&&" as the character itself.
QString withoutMnemonic(QString text)
{
    static const QRegularExpression added{uR"(\s*\(&[^&]\)(?=(\.\.\.|…)?$))"_s};
    static const QRegularExpression marked{u"&(.)"_s};
    return text.remove(added).replace(marked, u"\\1"_s);
}

void drawMark(QPainter &painter, const QList<QPointF> &points, const QColor &color)
{
    painter.setPen(QPen{color, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin});
    painter.drawPolyline(points);
}

/// The popups of combo boxes and completers ask for the same elements.
bool isMenu(const QWidget *widget) { return qobject_cast<const QMenu *>(widget) != nullptr; }

/// Draws one command or separator of a menu. Keeps a reference to the option.
class MenuItem final
{
public:
    explicit MenuItem(const QStyleOptionMenuItem &option);

    /// Without the width of the shortcut, which QMenu adds.
    QSize size() const;
    void draw(QPainter &painter) const;

private:
    bool isSeparator() const { return m_option.menuItemType == QStyleOptionMenuItem::Separator; }
    int leftMargin() const;
    int rightMargin() const;
    void drawSeparator(QPainter &painter) const;
    void drawCommand(QPainter &painter) const;

    const QStyleOptionMenuItem &m_option;
    QString m_title; ///< Without the mnemonic.
    QString m_shortcut;
};

MenuItem::MenuItem(const QStyleOptionMenuItem &menuOption)
    : m_option{menuOption},
      m_title{withoutMnemonic(m_option.text.section(u'\t', 0, 0))},
      m_shortcut{m_option.text.section(u'\t', 1)}
{
}

int MenuItem::leftMargin() const { return inset + (m_option.menuHasCheckableItems ? markWidth : 0); }

int MenuItem::rightMargin() const
{
    return inset + (m_option.menuItemType == QStyleOptionMenuItem::SubMenu ? markWidth : 0);
}

QSize MenuItem::size() const
{
    if (isSeparator()) {
        return {2 * inset, separatorHeight};
    }
    const QFontMetrics metrics{m_option.font};
    const int width = leftMargin() + metrics.horizontalAdvance(m_title) + rightMargin();
    return {width + (m_shortcut.isEmpty() ? 0 : gapBeforeShortcut),
            std::max(minimumItemHeight, metrics.height() + 2)};
}

void MenuItem::draw(QPainter &painter) const
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (isSeparator()) {
        drawSeparator(painter);
    } else {
        drawCommand(painter);
    }
    painter.restore();
}

void MenuItem::drawSeparator(QPainter &painter) const
{
    const PixelSnapper grid{painter};
    const QRectF bounds = QRectF{m_option.rect}.adjusted(inset, 0, -inset, 0);
    const double width = grid.lineWidth(1);
    const QPointF start = grid.aligned(QPointF{bounds.left(), bounds.center().y() - width / 2});
    painter.fillRect(QRectF{start, QSizeF{bounds.width(), width}}, themeColor(ColorRole::separator));
}

void MenuItem::drawCommand(QPainter &painter) const
{
    const bool isEnabled = m_option.state.testFlag(QStyle::State_Enabled);
    const bool isHighlighted = isEnabled && m_option.state.testFlag(QStyle::State_Selected);
    const auto colorOf = [&](ColorRole usual) {
        return themeColor(isHighlighted ? ColorRole::onAccent : isEnabled ? usual : ColorRole::tertiaryText);
    };
    if (isHighlighted) {
        painter.fillPath(roundedRect(PixelSnapper{painter}.aligned(m_option.rect), highlightRadius),
                         themeColor(ColorRole::accent));
    }
    const QRect texts = m_option.rect.adjusted(leftMargin(), 0, -rightMargin(), 0);
    painter.setFont(m_option.font);
    painter.setPen(colorOf(ColorRole::primaryText));
    const QPointF middle{0, texts.top() + baselineInRow(m_option.font, texts.height())};
    const double baseline = PixelSnapper{painter}.aligned(middle).y();
    painter.drawText(QPointF{texts.left() * 1.0, baseline}, m_title);
    painter.setPen(colorOf(ColorRole::secondaryText));
    const double shortcutWidth = QFontMetricsF{m_option.font}.horizontalAdvance(m_shortcut);
    painter.drawText(QPointF{texts.left() + texts.width() - shortcutWidth, baseline}, m_shortcut);

    const QRectF bounds{m_option.rect};
    if (m_option.checked) {
        const QPointF bottom{bounds.left() + inset + 3.5, bounds.center().y() + 3.5};
        drawMark(painter, {bottom + QPointF{-3, -3.5}, bottom, bottom + QPointF{5, -8}},
                 colorOf(ColorRole::primaryText));
    }
    if (m_option.menuItemType == QStyleOptionMenuItem::SubMenu) {
        const QPointF tip{bounds.right() - inset, bounds.center().y()};
        drawMark(painter, {tip + QPointF{-4, -4}, tip, tip + QPointF{-4, 4}},
                 colorOf(ColorRole::primaryText));
    }
}

} // namespace

MenuShadow::MenuShadow(QWidget &shown, QWidget *window) : QWidget{window}, m_menu{shown}
{
    hide();
    setAttribute(Qt::WA_TransparentForMouseEvents);
    m_menu.installEventFilter(this);
    connect(&m_menu, &QObject::destroyed, this, &QObject::deleteLater);
}

QRect MenuShadow::menuPlace() const
{
    return {parentWidget()->mapFromGlobal(m_menu.geometry().topLeft()), m_menu.size()};
}

void MenuShadow::follow()
{
    const Shadow shadow = menuShadow();
    const int reach = shadow.reach();
    const QRect place = menuPlace().adjusted(-reach, -reach, reach, reach);
    setGeometry(place.translated(shadow.offset.toPoint()) & parentWidget()->rect());
    raise();
    setVisible(m_menu.isVisible());
    update();
}

bool MenuShadow::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Show:
    case QEvent::Move:
    case QEvent::Resize:
        follow();
        break;
    case QEvent::Hide:
        hide();
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void MenuShadow::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.translate(-pos());
    menuShadow().draw(painter, roundedRect(menuPlace(), measures::controlRadius));
}

MenuStyle::MenuStyle() : QProxyStyle{QStyleFactory::create(u"Fusion"_s)} {}

void MenuStyle::polish(QWidget *widget)
{
    QProxyStyle::polish(widget);
    if (isMenu(widget)) {
        widget->setFont(systemFont(textSize));
        widget->setAttribute(Qt::WA_TranslucentBackground, popupBackground::canBeTranslucent());
        QWidget *owner = widget->parentWidget();
        // Submenus have no shadow.
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
        popupBackground::draw(*painter, option->rect, isRound ? measures::controlRadius : 0,
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
            // The border is part of the background.
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
