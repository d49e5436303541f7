#include "ui/style/ControlStyle.h"

#include "ui/style/ButtonFace.h"
#include "ui/style/FieldFrame.h"
#include "ui/theme/Measures.h"
#include "ui/theme/PixelSnapper.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/Theme.h"

#include <QPainter>
#include <QStyleOption>

#include <algorithm>

namespace quilmora {
namespace {

constexpr int scrollBarExtent = 12;
constexpr double scrollThumbMargin = 3;

void drawPushButton(QPainter &painter, const QStyleOptionButton &option)
{
    const bool isDefault = option.features.testFlag(QStyleOptionButton::DefaultButton);
    ButtonFace{.kind = isDefault ? ButtonFace::Kind::prominent : ButtonFace::Kind::bordered,
               .cornerRadius = measures::controlRadius,
               .isPressed = option.state.testFlag(QStyle::State_Sunken),
               .isFocused = option.state.testFlag(QStyle::State_HasFocus)}
        .draw(painter, option.rect);
}

void drawScrollBar(QPainter &painter, const QRect &thumb, bool active)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QColor color = themeColor(ColorRole::grey);
    color.setAlphaF(active ? 0.85F : 0.5F);
    const double margin = scrollThumbMargin;
    painter.fillPath(
        capsule(PixelSnapper{painter}.aligned(QRectF{thumb}.adjusted(margin, margin, -margin, -margin))),
        color);
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
        // The buttons of this style draw a focus ring.
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
    // Without arrows the groove is the whole bar.
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
        // The bar overlaps the content.
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
        return 0x2003; // An em space; MaskedField draws the dots.
    default:
        return MenuStyle::styleHint(hint, option, widget, returnData);
    }
}

} // namespace quilmora
