#include "screens/generate/DisclosureHeader.h"

#include "ui/accessibility/Accessibility.h"
#include "ui/style/FocusRing.h"
#include "ui/theme/Fonts.h"
#include "ui/theme/Measures.h"
#include "ui/theme/PixelSnapper.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/Symbol.h"
#include "ui/theme/Theme.h"
#include "ui/widgets/IconAndTitle.h"

#include <QAccessibleWidget>
#include <QFontMetrics>
#include <QPainter>

#include <utility>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

constexpr int rowHeight = 26;
constexpr int chevronSize = 10;

QFont titleFont() { return systemFont(13, QFont::Medium); }

/// A button that also reports whether it is expanded.
class DisclosureAccessible final : public QAccessibleWidget
{
public:
    explicit DisclosureAccessible(DisclosureHeader &header)
        : QAccessibleWidget{&header, QAccessible::Button},
          m_header{header}
    {
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.pressed = m_header.isDown();
        state.expandable = true;
        state.expanded = m_header.isExpanded();
        state.collapsed = !m_header.isExpanded();
        return state;
    }

    QStringList actionNames() const override
    {
        return QStringList{pressAction()} + QAccessibleWidget::actionNames();
    }

    void doAction(const QString &name) override
    {
        if (name == pressAction()) {
            m_header.click();
        } else {
            QAccessibleWidget::doAction(name);
        }
    }

private:
    DisclosureHeader &m_header;
};

} // namespace

DisclosureHeader::DisclosureHeader(QString iconName, const QString &title, bool expanded, QWidget *parent)
    : PaintedButton{title, parent},
      m_iconName{std::move(iconName)},
      m_expanded{expanded}
{
    installAccessibleInterface<DisclosureHeader, DisclosureAccessible>();
    setText(title);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(this, &DisclosureHeader::clicked, this, [this] {
        m_expanded = !m_expanded;
        update();
        // Qt does not report changes of this state.
        announce(this, m_expanded ? u"已展开"_s : u"已收起"_s);
        Q_EMIT expandedChanged(m_expanded);
    });
}

QSize DisclosureHeader::sizeHint() const
{
    return {QFontMetrics{titleFont()}.horizontalAdvance(text()) + 80, rowHeight};
}

void DisclosureHeader::paint(QPainter &painter)
{
    const Symbol icon{m_iconName, 13, QFont::Medium};
    const QSize face = iconAndTitle::size(&icon, text(), titleFont(), measures::iconSpacing);
    const QColor color = themeColor(ColorRole::primaryText);
    iconAndTitle::draw(painter, QRect{0, 0, face.width(), height()}, &icon, text(), titleFont(),
                       measures::iconSpacing, color);
    const Symbol chevron{m_expanded ? u"chevron.up"_s : u"chevron.down"_s, chevronSize};
    chevron.draw(painter, QRect{width() - chevron.extent(), 0, chevron.extent(), height()}, color);
    if (showsFocus()) {
        drawFocusRing(painter, roundedRect(PixelSnapper{painter}.aligned(rect()), measures::controlRadius));
    }
}

} // namespace quilmora
