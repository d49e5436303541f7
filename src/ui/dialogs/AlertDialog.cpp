#include "ui/dialogs/AlertDialog.h"

#include "ui/accessibility/Accessibility.h"
#include "ui/dialogs/Sheet.h"
#include "ui/theme/Theme.h"
#include "ui/widgets/ActionButton.h"
#include "ui/widgets/LogoView.h"
#include "ui/widgets/TextLabel.h"

#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

constexpr int dialogWidth = 260;
constexpr int logoSide = 56;

TextLabel *centeredLabel(const QString &text, TextLabel::Style style, QWidget *parent)
{
    auto *label = new TextLabel{text, style, parent};
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    return label;
}

} // namespace

AlertDialog::AlertDialog(const QString &title, const QString &message, const QString &buttonTitle)
{
    auto *logo = new LogoView{logoSide, 12, this};
    m_button = new ActionButton{
        {}, buttonTitle, {ActionButton::Kind::prominent, 13, QFont::Medium, 0, {16, 5}}, this};
    m_button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFocusProxy(m_button);

    auto *column = new QVBoxLayout{this};
    column->setContentsMargins(20, 20, 20, 20);
    column->setSpacing(0);
    column->addWidget(logo, 0, Qt::AlignHCenter);
    column->addSpacing(10);
    column->addWidget(centeredLabel(title, {13, QFont::Bold}, this));
    column->addSpacing(4);
    column->addWidget(centeredLabel(message, {11}, this));
    column->addSpacing(14);
    column->addWidget(m_button);
    readInLayoutOrder(*column);
}

void AlertDialog::open(const QString &title, const QString &message, const QString &buttonTitle,
                       QWidget *owner)
{
    auto *dialog = new AlertDialog{title, message, buttonTitle};
    auto *sheet = new Sheet{*dialog, title, message, owner};
    connect(dialog->m_button, &ActionButton::clicked, sheet, &Sheet::close);
}

QSize AlertDialog::sizeHint() const { return {dialogWidth, layout()->totalHeightForWidth(dialogWidth)}; }

void AlertDialog::paintEvent(QPaintEvent * /*event*/)
{
    Sheet::paintBackground(*this, themeColor(ColorRole::windowBackground));
}

} // namespace quilmora
