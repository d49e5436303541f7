#include "ui/widgets/ShadowHost.h"

#include <QPainter>

namespace quilmora {

void ShadowHost::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    for (const QObject *child : children()) {
        const auto *source = dynamic_cast<const ShadowSource *>(child);
        const auto *widget = qobject_cast<const QWidget *>(child);
        if (source != nullptr && widget->isVisible()) {
            painter.translate(widget->pos());
            source->shadow().draw(painter, source->outline());
            painter.translate(-widget->pos());
        }
    }
}

} // namespace quilmora
