#include "gallery/ApplicationFixture.h"
#include "gallery/Scene.h"
#include "gallery/SceneResources.h"
#include "support/ScriptedHttpServer.h"

using namespace Qt::StringLiterals;

namespace quilmora::gallery {
namespace {

QString saveButton() { return u"保存图片"_s; }

QString backButton() { return u"返回表单"_s; }

void pressTheButton(ApplicationFixture &stage)
{
    stage.open();
    stage.type(u"视频封面标题文本"_s, u"这个秘密改变了一切"_s);
    stage.type(u"背景场景"_s, u"未来科技感"_s);
}

void waitForTheCover(ApplicationFixture &stage, SceneResources &resources)
{
    stage.configure(resources.slowService(), SceneResources::key());
    pressTheButton(stage);
    stage.click(u"开始生成封面"_s);
    stage.waitFor(u"正在生成封面..."_s);
}

void makeACover(ApplicationFixture &stage, SceneResources &resources, const QString &size)
{
    stage.configure(resources.service(), SceneResources::key());
    pressTheButton(stage);
    stage.upload(u"人脸形象（必填）"_s, resources.presenterPhoto());
    stage.upload(u"风格参考（上传示例封面，非必填）"_s, resources.sampleCover());
    stage.click(size);
    stage.click(u"惊喜"_s);
    stage.click(u"开始生成封面"_s);
    stage.waitFor(saveButton());
}

void makeALandscapeCover(ApplicationFixture &stage, SceneResources &resources)
{
    makeACover(stage, resources, u"YouTube"_s);
}

void makeAPortraitCover(ApplicationFixture &stage, SceneResources &resources)
{
    makeACover(stage, resources, u"抖音 / TikTok"_s);
}

void failWithoutKey(ApplicationFixture &stage, SceneResources & /*resources*/)
{
    pressTheButton(stage);
    stage.click(u"开始生成封面"_s);
    stage.waitFor(backButton());
}

void failWithWrongKey(ApplicationFixture &stage, SceneResources &resources)
{
    stage.configure(resources.service(), u"another-key"_s);
    pressTheButton(stage);
    stage.click(u"开始生成封面"_s);
    stage.waitFor(backButton());
}

/// What stands before a service sometimes answers in its place, with a page of its own.
QByteArray gatewayPage()
{
    QByteArray page = "<html>\n<head><title>502 Bad Gateway</title></head>\n<body>\n"
                      "<center><h1>502 Bad Gateway</h1></center>\n<hr><center>gateway</center>\n";
    for (int attempt = 1; attempt <= 24; ++attempt) {
        page += "<p>upstream ark-cn-beijing-" + QByteArray::number(attempt) +
                ": 连接被重置，请求编号 0217326a5c9e4d1f8b70c2a3e5f6" + QByteArray::number(1000 + attempt) +
                "，请稍后重试。</p>\n";
    }
    return page + "</body>\n</html>\n";
}

void failAtLength(ApplicationFixture &stage, SceneResources & /*resources*/)
{
    const test::ScriptedHttpServer gateway{[](const test::ReceivedRequest &) {
        return test::ScriptedResponse::whole(gatewayPage(), "502 Bad Gateway");
    }};
    stage.configure(gateway.url(), SceneResources::key());
    pressTheButton(stage);
    stage.click(u"开始生成封面"_s);
    stage.waitFor(backButton());
}

} // namespace

QList<Scene> outcomeScenes()
{
    using enum Scene::Sizes;
    return {
        {u"loading"_s, u"正在生成"_s, common, {}, waitForTheCover},
        {u"result-landscape"_s, u"生成成功：横版"_s, common, {}, makeALandscapeCover},
        {u"result-portrait"_s, u"生成成功：竖版"_s, common, {}, makeAPortraitCover},
        {u"error-short"_s, u"生成失败：尚未配置"_s, common, {}, failWithoutKey},
        {u"error-service"_s, u"生成失败：服务的说明"_s, common, {}, failWithWrongKey},
        {u"error-long"_s, u"生成失败：很长的说明"_s, common, {}, failAtLength},
    };
}

} // namespace quilmora::gallery
