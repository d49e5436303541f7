#include "ui/style/PopupBackground.h"

#include "ui/theme/PixelSnapper.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/Theme.h"

#include <QGuiApplication>
#include <QPainter>

#ifdef QUILMORA_XCB
#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>
#endif

namespace quilmora::popupBackground {
#ifdef QUILMORA_XCB
namespace {

template <typename Reply>
using ReplyPointer = std::unique_ptr<Reply, decltype(&std::free)>;

/// A compositor owns this selection of the first screen, the one that Qt uses.
bool hasCompositor(xcb_connection_t *connection)
{
    constexpr std::string_view name{"_NET_WM_CM_S0"};
    const ReplyPointer<xcb_intern_atom_reply_t> atom{
        xcb_intern_atom_reply(connection, xcb_intern_atom(connection, 0, name.size(), name.data()), nullptr),
        &std::free};
    if (atom == nullptr) {
        return false;
    }
    const ReplyPointer<xcb_get_selection_owner_reply_t> owner{
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, atom->atom), nullptr),
        &std::free};
    return owner != nullptr && owner->owner != XCB_NONE;
}

} // namespace
#endif

bool canBeTranslucent()
{
#ifdef QUILMORA_XCB
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 != nullptr && x11->connection() != nullptr) {
        return hasCompositor(x11->connection());
    }
#endif
    return true;
}

void draw(QPainter &painter, const QRect &bounds, double cornerRadius, const QColor &color)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const PixelSnapper grid{painter};
    const QRectF whole = grid.aligned(bounds);
    painter.fillPath(roundedRect(whole, cornerRadius), color);
    const double lineWidth = grid.borderWidth();
    painter.strokePath(roundedRect(insideLine(whole, lineWidth), cornerRadius - lineWidth / 2),
                       QPen{themeColor(ColorRole::controlBorder), lineWidth});
    painter.restore();
}

} // namespace quilmora::popupBackground
