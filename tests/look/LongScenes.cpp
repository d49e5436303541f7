#include "LongScenes.h"

#include "gallery/Backstage.h"
#include "gallery/Stage.h"
#include "support/ScriptedHttpServer.h"

#include <functional>

using namespace Qt::StringLiterals;

namespace quilmora::test
{
namespace
{

using gallery::Backstage;
using gallery::Scene;
using gallery::Stage;

constexpr qsizetype longestAddress = 300;

struct LongText {
    QString name;
    QString text;
};

const QList<LongText> &longTexts()
{
    static const QList<LongText> all{
        {u"chinese"_s, u"把一件很小的事情坚持做上整整一千天以后你会看到一个完全不同的自己，"_s.repeated(20)},
        {u"latin"_s, u"The extraordinarily long and incomprehensible description of it all, "_s.repeated(20)},
        {u"one-word"_s, u"Donaudampfschifffahrtselektrizitaeten"_s.repeated(30)},
    };
    return all;
}

void fillForm(Stage &stage, Backstage &backstage, const QString &text)
{
    stage.open();
    stage.type(u"视频封面标题文本"_s, text);
    stage.type(u"背景场景"_s, text);
    stage.click(u"自定义..."_s);
    stage.type(u"请输入自定义表情描述"_s, text);
    stage.type(u"自定义风格指令（如\"使用蓝金配色\"、\"更戏剧化\"、\"保留原来的穿着\"）"_s, text);
    stage.upload(u"人脸形象（必填）"_s, backstage.hugePhoto());
    stage.upload(u"风格参考（上传示例封面，非必填）"_s, backstage.sampleCover());
}

void fail(Stage &stage, const QString &text)
{
    const ScriptedHttpServer server{[text](const ReceivedRequest &) {
        return ScriptedAnswer::whole(text.toUtf8(), "502 Bad Gateway");
    }};
    stage.configure(server.url(), Backstage::key());
    stage.open();
    stage.type(u"视频封面标题文本"_s, u"标题"_s);
    stage.click(u"开始生成封面"_s);
    stage.waitFor(u"返回表单"_s);
}

void listCovers(Stage &stage, Backstage &backstage, const QString &text)
{
    const QString file = backstage.cover(u"标题"_s, u"森林"_s, {640, 360});
    QList<Stage::Cover> covers;
    for (int number = 0; number < 6; ++number) {
        covers.append({text, number % 2 == 0 ? file : QString{}, 1.7e9 - number, text});
    }
    stage.addCovers(covers);
    stage.open();
    stage.click(u"已生成列表"_s);
}

void fillSettings(Stage &stage, const QString &text)
{
    stage.open();
    stage.click(u"功能设置"_s);
    for (const QString &field : {u"API URL"_s, u"API Key"_s, u"Model ID"_s}) {
        stage.type(field, text);
    }
}

void copyAddress(Stage &stage, const QString &text)
{
    stage.setAddresses(text, text);
    stage.open();
    stage.click(u"帮助说明"_s);
    stage.click(u"客服邮箱："_s + text);
}

} // namespace

QList<Scene> longScenes()
{
    QList<Scene> scenes;
    for (const LongText &longText : longTexts()) {
        const QString words = longText.text;
        const auto add = [&](const QString &what, const std::function<void(Stage &, Backstage &)> &prepare,
                             const std::function<void(Stage &)> &finish = {}) {
            scenes.append({what + u'-' + longText.name, {}, Scene::Sizes::common, {}, prepare, finish});
        };
        add(u"form"_s, [words](Stage &stage, Backstage &backstage) { fillForm(stage, backstage, words); });
        add(u"error"_s, [words](Stage &stage, Backstage &) { fail(stage, words); });
        add(u"short-error"_s, [words](Stage &stage, Backstage &) { fail(stage, words.left(90)); });
        add(u"history"_s,
            [words](Stage &stage, Backstage &backstage) { listCovers(stage, backstage, words); });
        add(
            u"preview"_s,
            [words](Stage &stage, Backstage &backstage) { listCovers(stage, backstage, words); },
            [](Stage &stage) { stage.openCover(0); });
        add(
            u"settings"_s, [words](Stage &stage, Backstage &) { fillSettings(stage, words); },
            [](Stage &stage) { stage.click(u"保存设置"_s); });
        add(u"help"_s,
            [words](Stage &stage, Backstage &) { copyAddress(stage, words.left(longestAddress)); });
    }
    return scenes;
}

} // namespace quilmora::test
