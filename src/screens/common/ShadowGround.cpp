#include "screens/common/ShadowGround.h"

#include <QPainter>

namespace quilmora
{

void ShadowGround::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    for (const QObject *child : children()) {
        const auto *caster = dynamic_cast<const ShadowCaster *>(child);
        const auto *widget = qobject_cast<const QWidget *>(child);
        if (caster != nullptr && widget->isVisible()) {
            painter.translate(widget->pos());
            caster->shadow().draw(painter, caster->outline());
            painter.translate(-widget->pos());
        }
    }
}

} // namespace quilmora
