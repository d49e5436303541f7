#include "screens/generate/ContentSection.h"

#include "screens/common/LabelledField.h"

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

LabelledField::Look fieldLook()
{
    return {.label = {12, QFont::Normal, ColorRole::secondaryText},
            .fieldPixelSize = 13,
            .hint = {11, QFont::Normal, ColorRole::tertiaryText}};
}

} // namespace

ContentSection::ContentSection(QWidget *parent)
    : FormSection{2, u"填写封面内容"_s, parent},
      title{new LabelledField{{u"视频封面标题文本"_s, u"我靠这个赚了100万 / 这个秘密改变了一切"_s,
                               u"推荐不超过16个汉字，以保证设计效果"_s},
                              fieldLook(),
                              this}},
      scene{new LabelledField{
          {u"背景场景"_s, u"豪华办公室 / 未来科技感 / 金色财富主题"_s, u"输入封面背景图中体现的元素"_s},
          fieldLook(),
          this}}
{
    connect(title->field(), &TextField::shownTextChanged, this, &ContentSection::shownTitleChanged);
    column()->addWidget(title);
    column()->addWidget(scene);
}

QString ContentSection::titleText() const
{
    return title->text();
}

QString ContentSection::shownTitle() const
{
    return title->field()->shownText();
}

QString ContentSection::sceneText() const
{
    return scene->text();
}

void ContentSection::focusTitle()
{
    title->field()->setFocus();
}

} // namespace quilmora
