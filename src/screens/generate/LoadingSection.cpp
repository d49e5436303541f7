#include "screens/generate/LoadingSection.h"

#include "screens/generate/ProgressSpinner.h"
#include "ui/widgets/TextLabel.h"

#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

constexpr int minimumSectionHeight = 400;
constexpr int spacing = 18;
constexpr int spinnerDiameter = 32;

} // namespace

LoadingSection::LoadingSection(QWidget *parent) : QWidget{parent}
{
    const QString title = u"正在生成封面..."_s;
    const QString hint = u"请稍候，火山引擎正在生成中"_s;
    setMinimumHeight(minimumSectionHeight);
    auto *column = new QVBoxLayout{this};
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(spacing);
    column->addStretch();
    column->addWidget(new ProgressSpinner{spinnerDiameter, title, this}, 0, Qt::AlignHCenter);
    column->addWidget(makeNotification(title, hint, {16, QFont::Medium}, this), 0, Qt::AlignHCenter);
    column->addWidget(new TextLabel{hint, {12}, this}, 0, Qt::AlignHCenter);
    column->addStretch();
}

} // namespace quilmora
