#include "ui/widgets/LogoView.h"

#include "ui/accessibility/Accessibility.h"
#include "ui/theme/PixelSnapper.h"

#include <QPainter>

#include <utility>

using namespace Qt::StringLiterals;

namespace quilmora {

LogoView::LogoView(int frameSide, double radius, QWidget *parent, LogoFiles files)
    : QWidget{parent},
      m_side{frameSide},
      m_cornerRadius{radius},
      m_files{std::move(files)}
{
    setAccessibleRole(this, {QAccessible::Graphic});
    setAccessibleName(u"Quilmora"_s);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void LogoView::paintEvent(QPaintEvent * /*event*/)
{
    if (m_logo.devicePixelRatio() != devicePixelRatioF() || m_logo.isNull()) {
        m_logo = logoPixmap(m_side, m_cornerRadius, devicePixelRatioF(), m_files.resourceFolders,
                            m_files.assetPath);
    }
    QPainter painter{this};
    painter.drawPixmap(PixelSnapper{painter}.aligned(QPointF{0, 0}), m_logo);
}

} // namespace quilmora
