#include "screens/help/HelpView.h"

#include "screens/help/BuildConfiguration.h"
#include "ui/style/FocusRing.h"
#include "ui/theme/Fonts.h"
#include "ui/theme/PixelSnapper.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/Theme.h"
#include "ui/widgets/LogoView.h"
#include "ui/widgets/TextLabel.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QPainter>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

constexpr int spacing = 16;
constexpr int sideMargin = 40;
constexpr int logoSide = 96;
constexpr double logoRadius = 20;
constexpr QMarginsF ringMargins{9, 5, 9, 5};
constexpr double ringRadius = 7;

QFont contactFont() { return systemFont(13); }

} // namespace

// Not by setText(), which makes a mnemonic of "&".
ContactLine::ContactLine(const QString &text, QWidget *parent)
    : PaintedButton{text, parent},
      m_text{text, contactFont(), ElidedText::unlimited, Qt::AlignHCenter}
{
    setFont(contactFont());
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
}

void ContactLine::paint(QPainter &painter)
{
    m_text.draw(painter, rect(), themeColor(ColorRole::primaryText));
}

void ContactLine::focusInEvent(QFocusEvent *event)
{
    PaintedButton::focusInEvent(event);
    Q_EMIT focusChanged();
}

void ContactLine::focusOutEvent(QFocusEvent *event)
{
    PaintedButton::focusOutEvent(event);
    Q_EMIT focusChanged();
}

AboutInformation AboutInformation::current()
{
    return {.version = buildConfiguration::version.toString(),
            .email = buildConfiguration::supportEmail.toString(),
            .website = buildConfiguration::website.toString()};
}

HelpView::HelpView(const AboutInformation &contents, QWidget *parent) : QWidget{parent}
{
    auto *column = new QVBoxLayout{this};
    column->setContentsMargins(sideMargin, 0, sideMargin, 0);
    column->setSpacing(spacing);
    column->addStretch();
    column->addWidget(new LogoView{logoSide, logoRadius, this, contents.logo}, 0, Qt::AlignHCenter);
    column->addWidget(new TextLabel{u"Quilmora"_s, {18, QFont::DemiBold}, this}, 0, Qt::AlignHCenter);
    column->addWidget(
        new TextLabel{u"版本号："_s + contents.version, {13, QFont::Normal, ColorRole::secondaryText}, this},
        0, Qt::AlignHCenter);
    addContactLine(*column, u"客服邮箱："_s + contents.email, contents.email);
    addContactLine(*column, u"服务帮助："_s + contents.website + u"（仅技术支持与使用说明）"_s,
                   contents.website);
    column->addStretch();
    m_toast = new Toast{this, contents.toastStay};
}

void HelpView::addContactLine(QVBoxLayout &column, const QString &text, const QString &value)
{
    auto *line = new ContactLine{text, this};
    connect(line, &ContactLine::clicked, this, [this, value] { copyToClipboard(value); });
    connect(line, &ContactLine::focusChanged, this, qOverload<>(&HelpView::update));
    column.addWidget(line, 0, Qt::AlignHCenter);
}

void HelpView::copyToClipboard(const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
    m_toast->showMessage(u"已复制："_s + text);
}

void HelpView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    m_toast->place();
}

void HelpView::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    for (const auto *line : findChildren<ContactLine *>()) {
        if (line->showsFocus()) {
            drawFocusRing(painter,
                          roundedRect(PixelSnapper{painter}.aligned(QRectF{line->geometry()} + ringMargins),
                                      ringRadius));
        }
    }
}

} // namespace quilmora
