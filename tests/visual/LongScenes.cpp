#include "LongScenes.h"

#include "app/NavigationTab.h"
#include "gallery/ApplicationFixture.h"
#include "gallery/SceneResources.h"
#include "model/Emotion.h"
#include "support/ScriptedHttpServer.h"
#include "support/Texts.h"

#include <functional>

using namespace Qt::StringLiterals;

namespace quilmora::test {
namespace {

using gallery::ApplicationFixture;
using gallery::Scene;
using gallery::SceneResources;

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

void fillForm(ApplicationFixture &stage, SceneResources &resources, const QString &text)
{
    stage.open();
    stage.click(Emotion::presets().constLast().name);
    for (const QString &field : {texts::title, texts::scene, texts::customExpression, texts::instructions}) {
        stage.type(field, text);
    }
    stage.upload(texts::facePhoto, resources.hugePhoto());
    stage.upload(texts::stylePicture, resources.sampleCover());
}

void fail(ApplicationFixture &stage, const QString &text)
{
    const ScriptedHttpServer server{[text](const ReceivedRequest &) {
        return ScriptedResponse::whole(text.toUtf8(), "502 Bad Gateway");
    }};
    stage.configure(server.url(), SceneResources::key());
    stage.open();
    stage.type(texts::title, u"标题"_s);
    stage.click(texts::start);
    stage.waitFor(texts::back);
}

void listCovers(ApplicationFixture &stage, SceneResources &resources, const QString &text)
{
    const QString file = resources.cover(u"标题"_s, u"森林"_s, {640, 360});
    QList<ApplicationFixture::Cover> covers;
    for (int number = 0; number < 6; ++number) {
        covers.append({text, number % 2 == 0 ? file : QString{}, 1.7e9 - number, text});
    }
    stage.addCovers(covers);
    stage.open();
    stage.click(texts::history);
}

void fillSettings(ApplicationFixture &stage, const QString &text)
{
    stage.open();
    stage.click(NavigationTab{NavigationTab::settings}.rawValue());
    for (const QString &field : texts::settings) {
        stage.type(field, text);
    }
}

void copyAddress(ApplicationFixture &stage, const QString &text)
{
    stage.setAddresses(text, text);
    stage.open();
    stage.click(NavigationTab{NavigationTab::help}.rawValue());
    stage.click(u"客服邮箱："_s + text);
}

} // namespace

QList<Scene> longScenes()
{
    QList<Scene> scenes;
    for (const LongText &longText : longTexts()) {
        const QString words = longText.text;
        const auto add = [&](const QString &what,
                             const std::function<void(ApplicationFixture &, SceneResources &)> &prepare,
                             const std::function<void(ApplicationFixture &)> &finish = {}) {
            scenes.append({what + u'-' + longText.name, {}, Scene::Sizes::common, {}, prepare, finish});
        };
        add(u"form"_s, [words](ApplicationFixture &stage, SceneResources &resources) {
            fillForm(stage, resources, words);
        });
        add(u"error"_s, [words](ApplicationFixture &stage, SceneResources &) { fail(stage, words); });
        add(u"short-error"_s,
            [words](ApplicationFixture &stage, SceneResources &) { fail(stage, words.left(90)); });
        add(u"history"_s, [words](ApplicationFixture &stage, SceneResources &resources) {
            listCovers(stage, resources, words);
        });
        add(
            u"preview"_s,
            [words](ApplicationFixture &stage, SceneResources &resources) {
                listCovers(stage, resources, words);
            },
            [](ApplicationFixture &stage) { stage.openCover(0); });
        add(
            u"settings"_s,
            [words](ApplicationFixture &stage, SceneResources &) { fillSettings(stage, words); },
            [](ApplicationFixture &stage) { stage.click(texts::saveSettings); });
        add(u"help"_s, [words](ApplicationFixture &stage, SceneResources &) {
            copyAddress(stage, words.left(longestAddress));
        });
    }
    return scenes;
}

} // namespace quilmora::test
