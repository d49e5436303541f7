#include "gallery/Backstage.h"
#include "gallery/Scene.h"
#include "gallery/Stage.h"
#include "support/ScriptedHttpServer.h"

using namespace Qt::StringLiterals;

namespace quilmora::gallery
{
namespace
{

QString saveButton()
{
    return u"保存图片"_s;
}

QString backButton()
{
    return u"返回表单"_s;
}

void pressTheButton(Stage &stage)
{
    stage.open();
    stage.type(u"视频封面标题文本"_s, u"这个秘密改变了一切"_s);
    stage.type(u"背景场景"_s, u"未来科技感"_s);
}

void waitForTheCover(Stage &stage, Backstage &backstage)
{
    stage.configure(backstage.slowService(), Backstage::key());
    pressTheButton(stage);
    stage.click(u"开始生成封面"_s);
    stage.waitFor(u"正在生成封面..."_s);
}

void makeACover(Stage &stage, Backstage &backstage, const QString &size)
{
    stage.configure(backstage.service(), Backstage::key());
    pressTheButton(stage);
    stage.upload(u"人脸形象（必填）"_s, backstage.presenterPhoto());
    stage.upload(u"风格参考（上传示例封面，非必填）"_s, backstage.sampleCover());
    stage.click(size);
    stage.click(u"惊喜"_s);
    stage.click(u"开始生成封面"_s);
    stage.waitFor(saveButton());
}

void makeALandscapeCover(Stage &stage, Backstage &backstage)
{
    makeACover(stage, backstage, u"YouTube"_s);
}

void makeAPortraitCover(Stage &stage, Backstage &backstage)
{
    makeACover(stage, backstage, u"抖音 / TikTok"_s);
}

void failWithoutKey(Stage &stage, Backstage & /*backstage*/)
{
    pressTheButton(stage);
    stage.click(u"开始生成封面"_s);
    stage.waitFor(backButton());
}

void failWithWrongKey(Stage &stage, Backstage &backstage)
{
    stage.configure(backstage.service(), u"another-key"_s);
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

void failAtLength(Stage &stage, Backstage & /*backstage*/)
{
    const test::ScriptedHttpServer gateway{[](const test::ReceivedRequest &) {
        return test::ScriptedAnswer::whole(gatewayPage(), "502 Bad Gateway");
    }};
    stage.configure(gateway.url(), Backstage::key());
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
