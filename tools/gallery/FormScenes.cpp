#include "gallery/ApplicationFixture.h"
#include "gallery/Scene.h"
#include "gallery/SceneResources.h"

using namespace Qt::StringLiterals;

namespace quilmora::gallery {
namespace {

QString titleField() { return u"视频封面标题文本"_s; }

QString sceneField() { return u"背景场景"_s; }

QString faceCard() { return u"人脸形象（必填）"_s; }

QString styleCard() { return u"风格参考（上传示例封面，非必填）"_s; }

QString advancedRow() { return u"高级选项"_s; }

void openEmpty(ApplicationFixture &stage, SceneResources & /*resources*/) { stage.open(); }

void fill(ApplicationFixture &stage, SceneResources &resources)
{
    stage.open();
    stage.type(titleField(), u"这个秘密改变了一切"_s);
    stage.type(sceneField(), u"未来科技感"_s);
    stage.upload(faceCard(), resources.presenterPhoto());
    stage.upload(styleCard(), resources.sampleCover());
    stage.click(u"惊喜"_s);
}

void chooseCustomExpression(ApplicationFixture &stage, SceneResources & /*resources*/)
{
    stage.open();
    stage.click(u"自定义..."_s);
    stage.type(u"请输入自定义表情描述"_s, u"挑眉，嘴角微微上扬"_s);
}

void foldAdvanced(ApplicationFixture &stage, SceneResources & /*resources*/)
{
    stage.open();
    stage.click(advancedRow());
}

void uploadTooLargePhoto(ApplicationFixture &stage, SceneResources &resources)
{
    stage.open();
    stage.upload(faceCard(), resources.hugePhoto());
    stage.upload(styleCard(), resources.sampleCover());
    stage.upload(styleCard(), resources.hugePhoto());
}

} // namespace

QList<Scene> formScenes()
{
    using enum Scene::Sizes;
    return {
        {u"form-empty"_s, u"生成封面：空白表单"_s, scrolls, {}, openEmpty},
        {u"form-filled"_s, u"生成封面：已填写"_s, scrolls, {}, fill},
        {u"form-custom"_s, u"生成封面：自定义表情"_s, scrolls, u"请输入自定义表情描述"_s,
         chooseCustomExpression},
        {u"form-folded"_s, u"生成封面：高级选项已收起"_s, scrolls, advancedRow(), foldAdvanced},
        {u"form-upload-error"_s, u"生成封面：照片过大"_s, scrolls, u"移除"_s, uploadTooLargePhoto},
    };
}

} // namespace quilmora::gallery
