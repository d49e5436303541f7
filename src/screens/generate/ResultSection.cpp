#include "screens/generate/ResultSection.h"

#include "ui/accessibility/Accessibility.h"
#include "ui/theme/Measures.h"
#include "ui/widgets/ActionButton.h"
#include "ui/widgets/PictureView.h"
#include "ui/widgets/TextLabel.h"

#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

constexpr int verticalPadding = 30;
constexpr int spacing = 18;
constexpr double buttonShadowOpacity = 0.25;
constexpr QSize pictureBox{600, 500};

} // namespace

ResultSection::ResultSection(const QImage &image, QWidget *parent) : ShadowHost{parent}
{
    auto *heading = makeNotification(u"生成成功"_s, {}, {16, QFont::DemiBold, ColorRole::greenText}, this);
    const Shadow shadow{themeColor(ColorRole::pictureShadow), 10, {0, 4}};
    m_picture = new PictureView{image, u"生成的封面"_s, {pictureBox, measures::cardRadius, shadow}, this};
    auto *back = new GradientButton{u"arrow.counterclockwise"_s, u"返回表单"_s, buttonShadowOpacity, this};
    auto *save = new GradientButton{u"square.and.arrow.down"_s, u"保存图片"_s, buttonShadowOpacity, this};
    connect(back, &GradientButton::clicked, this, &ResultSection::returnRequested);
    connect(save, &GradientButton::clicked, this, &ResultSection::saveRequested);
    setFocusProxy(save);

    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(measures::buttonSpacing);
    buttons->addStretch();
    buttons->addWidget(back);
    buttons->addWidget(save);
    buttons->addStretch();

    auto *column = new QVBoxLayout{this};
    column->setContentsMargins(0, verticalPadding, 0, verticalPadding);
    column->setSpacing(spacing);
    column->addWidget(heading, 0, Qt::AlignHCenter);
    column->addWidget(m_picture, 0, Qt::AlignHCenter);
    column->addLayout(buttons);
    column->addStretch();
    readInLayoutOrder(*column);
}

void ResultSection::resizeEvent(QResizeEvent *event)
{
    ShadowHost::resizeEvent(event);
    m_picture->setBox({std::min(pictureBox.width(), width()), pictureBox.height()});
}

} // namespace quilmora
