#include "gallery/ApplicationFixture.h"
#include "gallery/Scene.h"
#include "gallery/SceneResources.h"
#include "generation/GenerationRequest.h"
#include "model/CoverInputs.h"

using namespace Qt::StringLiterals;

namespace quilmora::gallery {
namespace {

constexpr int many = 23;
constexpr double newest = 1'763'700'000;
constexpr double betweenTwo = 5'000;
/// Enough pixels for a tile, and for the preview.
constexpr int tileSide = 720;
constexpr int previewSide = 1760;

struct Words {
    QString title;
    QString scene;
};

const QList<Words> &words()
{
    static const QList<Words> all{
        {u"我靠这个赚了100万"_s, u"豪华办公室"_s},
        {u"这个秘密改变了一切"_s, u"未来科技感"_s},
        {u"普通人如何存下第一桶金"_s, u"金色财富主题"_s},
        {u"一个人的海边旅行"_s, u"海边日落"_s},
        {u"深夜食堂开张啦"_s, u"美食"_s},
        {u"徒步三天三夜"_s, u"森林"_s},
        {u"凌晨四点的城市"_s, u"城市夜景"_s},
        {u"带你看懂黑洞"_s, u"宇宙星空"_s},
    };
    return all;
}

/// Every size in turn, and another one when the words come around again.
QSize coverSize(int number, int side)
{
    const qsizetype turn = number + number / words().size();
    const CoverSize &preset = CoverSize::presets().at(turn % CoverSize::presets().size());
    return QSize{static_cast<int>(preset.width), static_cast<int>(preset.height)}.scaled(side, side,
                                                                                         Qt::KeepAspectRatio);
}

QString promptOf(const Words &what)
{
    return composePrompt({.selectedSize = CoverSize::presets().constFirst(),
                          .titleText = what.title,
                          .sceneText = what.scene,
                          .selectedEmotion = Emotion::presets().constFirst(),
                          .customEmotion = {},
                          .faceImage = {},
                          .styleImage = {},
                          .advancedText = {}});
}

ApplicationFixture::Cover coverOf(SceneResources &resources, int number, int side)
{
    const Words &what = words().at(number % words().size());
    return {promptOf(what), resources.cover(what.title, what.scene, coverSize(number, side)),
            newest - number * betweenTwo, VolcengineConfig::defaultModelID()};
}

void openHistory(ApplicationFixture &stage)
{
    stage.open();
    stage.click(u"已生成列表"_s);
}

void showNone(ApplicationFixture &stage, SceneResources & /*resources*/) { openHistory(stage); }

void showOne(ApplicationFixture &stage, SceneResources &resources)
{
    stage.addCovers({coverOf(resources, 0, tileSide)});
    openHistory(stage);
}

void showMany(ApplicationFixture &stage, SceneResources &resources)
{
    QList<ApplicationFixture::Cover> covers;
    for (int number = 0; number < many; ++number) {
        covers.append(coverOf(resources, number, tileSide));
    }
    stage.addCovers(covers);
    openHistory(stage);
}

void showMissing(ApplicationFixture &stage, SceneResources &resources)
{
    QList<ApplicationFixture::Cover> covers;
    for (int number = 0; number < 6; ++number) {
        covers.append(coverOf(resources, number, tileSide));
        if (number % 2 == 1) {
            covers.last().file.clear();
        }
    }
    stage.addCovers(covers);
    openHistory(stage);
}

void listOne(ApplicationFixture &stage, SceneResources &resources, int number)
{
    stage.addCovers({coverOf(resources, number, previewSide)});
    openHistory(stage);
}

void listLandscape(ApplicationFixture &stage, SceneResources &resources) { listOne(stage, resources, 0); }

void listPortrait(ApplicationFixture &stage, SceneResources &resources) { listOne(stage, resources, 3); }

void listMissing(ApplicationFixture &stage, SceneResources & /*resources*/)
{
    stage.addCovers({{promptOf(words().constFirst()), {}, newest, VolcengineConfig::defaultModelID()}});
    openHistory(stage);
}

void openFirst(ApplicationFixture &stage) { stage.openCover(0); }

} // namespace

QList<Scene> historyScenes()
{
    using enum Scene::Sizes;
    return {
        {u"history-empty"_s, u"已生成列表：还没有封面"_s, large, {}, showNone},
        {u"history-one"_s, u"已生成列表：一张"_s, large, {}, showOne},
        {u"history-many"_s, u"已生成列表：很多"_s, large, {}, showMany},
        {u"history-missing"_s, u"已生成列表：图片不见了"_s, large, {}, showMissing},
        {u"preview-landscape"_s, u"预览：横版"_s, common, {}, listLandscape, openFirst},
        {u"preview-portrait"_s, u"预览：竖版"_s, common, {}, listPortrait, openFirst},
        {u"preview-missing"_s, u"预览：图片不见了"_s, common, {}, listMissing, openFirst},
    };
}

} // namespace quilmora::gallery
