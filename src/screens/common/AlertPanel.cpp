#include "screens/common/AlertPanel.h"

#include "screens/common/ActionButton.h"
#include "screens/common/LogoView.h"
#include "screens/common/Shapes.h"
#include "screens/common/TextLabel.h"
#include "screens/common/Theme.h"

#include <QBitmap>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

constexpr int panelWidth = 260;
constexpr int logoSide = 56;
constexpr double cornerRadius = 12;

/// Whether the corners are cut off the window: on X11 translucent ones need a compositor.
bool cutsItsShape()
{
    return QGuiApplication::platformName() == u"xcb"_s;
}

TextLabel *centredLabel(const QString &text, TextLabel::Style style, QWidget *parent)
{
    auto *label = new TextLabel{text, style, parent};
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    return label;
}

} // namespace

AlertPanel::AlertPanel(const QString &title, const QString &message, const QString &buttonTitle,
                       QWidget *parent)
    : QDialog{parent, Qt::Sheet | Qt::FramelessWindowHint}
{
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_TranslucentBackground, !cutsItsShape());
    setWindowModality(Qt::WindowModal);
    setWindowTitle(title);
    setAccessibleName(title);
    setAccessibleDescription(message);
    setFixedWidth(panelWidth);

    auto *logo = new LogoView{logoSide, 12, this};
    auto *close = new ActionButton{
        {}, buttonTitle, {ActionButton::Kind::prominent, 13, QFont::Medium, 0, {16, 5}}, this};
    close->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(close, &ActionButton::clicked, this, &QDialog::reject);

    auto *column = new QVBoxLayout{this};
    column->setContentsMargins(20, 20, 20, 16);
    column->setSpacing(10);
    column->addWidget(logo, 0, Qt::AlignHCenter);
    column->addWidget(centredLabel(title, {13, QFont::Bold}, this));
    column->addWidget(centredLabel(message, {11}, this));
    column->addSpacing(4);
    column->addWidget(close);
    close->setFocus();
}

void AlertPanel::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    const QWidget *window = parentWidget()->window();
    const QRect place = window->frameGeometry();
    move(place.center().x() - width() / 2, place.y() + place.height() / 3 - height() / 3);
    if (cutsItsShape()) {
        QBitmap shape{size()};
        shape.clear();
        QPainter painter{&shape};
        painter.fillPath(roundedRect(rect(), cornerRadius), Qt::color1);
        painter.end();
        setMask(shape);
    }
}

void AlertPanel::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        reject();
        return;
    }
    QDialog::keyPressEvent(event);
}

void AlertPanel::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    const QPainterPath outline = roundedRect(insideLine(rect(), 1), cornerRadius - 0.5);
    const QColor ground = themeColor(ColorRole::windowBackground);
    if (cutsItsShape()) {
        painter.fillRect(rect(), ground);
    } else {
        painter.fillPath(outline, ground);
    }
    painter.strokePath(outline, QPen{themeColor(ColorRole::controlBorder), 1});
}

} // namespace quilmora
