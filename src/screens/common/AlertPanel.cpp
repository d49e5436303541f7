#include "screens/common/AlertPanel.h"

#include "screens/common/ActionButton.h"
#include "screens/common/LogoView.h"
#include "screens/common/ReadingOrder.h"
#include "screens/common/Sheet.h"
#include "screens/common/TextLabel.h"
#include "screens/common/Theme.h"

#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

constexpr int panelWidth = 260;
constexpr int logoSide = 56;

TextLabel *centredLabel(const QString &text, TextLabel::Style style, QWidget *parent)
{
    auto *label = new TextLabel{text, style, parent};
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    return label;
}

} // namespace

AlertPanel::AlertPanel(const QString &title, const QString &message, const QString &buttonTitle)
{
    auto *logo = new LogoView{logoSide, 12, this};
    button = new ActionButton{
        {}, buttonTitle, {ActionButton::Kind::prominent, 13, QFont::Medium, 0, {16, 5}}, this};
    button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFocusProxy(button);

    auto *column = new QVBoxLayout{this};
    column->setContentsMargins(20, 20, 20, 20);
    column->setSpacing(0);
    column->addWidget(logo, 0, Qt::AlignHCenter);
    column->addSpacing(10);
    column->addWidget(centredLabel(title, {13, QFont::Bold}, this));
    column->addSpacing(4);
    column->addWidget(centredLabel(message, {11}, this));
    column->addSpacing(14);
    column->addWidget(button);
    readInLayoutOrder(*column);
}

void AlertPanel::open(const QString &title, const QString &message, const QString &buttonTitle,
                      QWidget *owner)
{
    auto *panel = new AlertPanel{title, message, buttonTitle};
    auto *sheet = new Sheet{*panel, title, message, owner};
    connect(panel->button, &ActionButton::clicked, sheet, &Sheet::close);
}

QSize AlertPanel::sizeHint() const
{
    return {panelWidth, layout()->totalHeightForWidth(panelWidth)};
}

void AlertPanel::paintEvent(QPaintEvent * /*event*/)
{
    Sheet::paintGround(*this, themeColor(ColorRole::windowBackground));
}

} // namespace quilmora
