#include "screens/common/ControlStyle.h"

#include "screens/common/FieldFrame.h"
#include "screens/common/FocusRing.h"
#include "screens/common/PixelGrid.h"
#include "screens/common/Shapes.h"
#include "screens/common/Theme.h"

#include <QPainter>
#include <QStyleOption>

#include <algorithm>

namespace quilmora
{
namespace
{

constexpr double cornerRadius = 6;
constexpr int scrollBarExtent = 12;
constexpr double scrollThumbMargin = 3;

void drawPushButton(QPainter &painter, const QStyleOptionButton &option)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const bool isDefault = option.features.testFlag(QStyleOptionButton::DefaultButton);
    const PixelGrid grid{painter};
    const double lineWidth = isDefault ? 0 : grid.lineWidth(Theme::current().borderWidth(1));
    const QRectF whole = grid.aligned(option.rect);
    const QPainterPath outline = continuousRoundedRect(insideLine(whole, lineWidth), cornerRadius);
    painter.fillPath(outline, themeColor(isDefault ? ColorRole::accent : ColorRole::buttonBackground));
    if (!isDefault) {
        painter.strokePath(outline, QPen{themeColor(ColorRole::controlBorder), lineWidth});
    }
    if (option.state.testFlag(QStyle::State_Sunken)) {
        painter.fillPath(outline, themeColor(ColorRole::controlPressed));
    }
    if (option.state.testFlag(QStyle::State_HasFocus)) {
        drawFocusRing(painter, continuousRoundedRect(whole, cornerRadius + lineWidth / 2),
                      isDefault ? ColorRole::onAccent : ColorRole::accent);
    }
    painter.restore();
}

void drawScrollBar(QPainter &painter, const QRect &thumb, bool active)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QColor color = themeColor(ColorRole::grey);
    color.setAlphaF(active ? 0.85F : 0.5F);
    const double margin = scrollThumbMargin;
    painter.fillPath(
        capsule(PixelGrid{painter}.aligned(QRectF{thumb}.adjusted(margin, margin, -margin, -margin))), color);
    painter.restore();
}

} // namespace

void ControlStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                                 const QWidget *widget) const
{
    switch (element) {
    case PE_PanelLineEdit:
        if (const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
            frame == nullptr || frame->lineWidth > 0) {
            drawFieldFrame(*painter, option->rect, option->state.testFlag(State_HasFocus));
            return;
        }
        break;
    case PE_FrameLineEdit:
        return;
    case PE_FrameFocusRect:
        // Every control of this look draws its focus itself.
        if (widget != nullptr && widget->inherits("QAbstractButton")) {
            return;
        }
        break;
    default:
        break;
    }
    MenuStyle::drawPrimitive(element, option, painter, widget);
}

void ControlStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                               const QWidget *widget) const
{
    const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option);
    if (element == CE_PushButtonBevel && button != nullptr) {
        drawPushButton(*painter, *button);
        return;
    }
    if (element == CE_PushButtonLabel && button != nullptr &&
        button->features.testFlag(QStyleOptionButton::DefaultButton)) {
        QStyleOptionButton onAccent{*button};
        onAccent.palette.setColor(QPalette::ButtonText, themeColor(ColorRole::onAccent));
        MenuStyle::drawControl(element, &onAccent, painter, widget);
        return;
    }
    MenuStyle::drawControl(element, option, painter, widget);
}

void ControlStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                                      QPainter *painter, const QWidget *widget) const
{
    if (control != CC_ScrollBar) {
        MenuStyle::drawComplexControl(control, option, painter, widget);
        return;
    }
    const auto *bar = qstyleoption_cast<const QStyleOptionSlider *>(option);
    if (bar != nullptr && bar->maximum <= bar->minimum) {
        return;
    }
    const bool active = option->state.testFlag(State_MouseOver) || option->state.testFlag(State_Sunken);
    drawScrollBar(*painter, subControlRect(control, option, SC_ScrollBarSlider, widget), active);
}

QRect ControlStyle::subControlRect(ComplexControl control, const QStyleOptionComplex *option,
                                   SubControl subControl, const QWidget *widget) const
{
    const auto *bar = qstyleoption_cast<const QStyleOptionSlider *>(option);
    if (control != CC_ScrollBar || bar == nullptr) {
        return MenuStyle::subControlRect(control, option, subControl, widget);
    }
    // A bar without arrows: all of it is groove.
    const bool vertical = bar->orientation == Qt::Vertical;
    const int length = vertical ? bar->rect.height() : bar->rect.width();
    const int range = bar->maximum - bar->minimum;
    const double share = range > 0 ? static_cast<double>(bar->pageStep) / (range + bar->pageStep) : 1.0;
    const int thumb = std::clamp(static_cast<int>(length * share), std::min(length, 32), length);
    const int start = sliderPositionFromValue(bar->minimum, bar->maximum, bar->sliderPosition, length - thumb,
                                              bar->upsideDown);
    const auto along = [&](int from, int size) {
        return vertical ? QRect{bar->rect.x(), bar->rect.y() + from, bar->rect.width(), size}
                        : QRect{bar->rect.x() + from, bar->rect.y(), size, bar->rect.height()};
    };
    switch (subControl) {
    case SC_ScrollBarGroove:
        return bar->rect;
    case SC_ScrollBarSlider:
        return along(start, thumb);
    case SC_ScrollBarSubPage:
        return along(0, start);
    case SC_ScrollBarAddPage:
        return along(start + thumb, length - start - thumb);
    default:
        return {};
    }
}

int ControlStyle::pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const
{
    switch (metric) {
    case PM_ScrollBarExtent:
    case PM_ScrollView_ScrollBarOverlap:
        // The bar lies over the content, whose margins stay even.
        return scrollBarExtent;
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
        return 0;
    default:
        return MenuStyle::pixelMetric(metric, option, widget);
    }
}

int ControlStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                            QStyleHintReturn *returnData) const
{
    switch (hint) {
    case SH_DialogButtonBox_ButtonsHaveIcons:
    case SH_EtchDisabledText:
        return 0;
    case SH_LineEdit_PasswordCharacter:
        return 0x2003; // A wide blank; MaskedField draws the dots.
    default:
        return MenuStyle::styleHint(hint, option, widget, returnData);
    }
}

} // namespace quilmora
