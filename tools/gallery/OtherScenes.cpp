#include "gallery/ApplicationFixture.h"
#include "gallery/Scene.h"
#include "gallery/SceneResources.h"

using namespace Qt::StringLiterals;

namespace quilmora::gallery {
namespace {

QString saveButton() { return u"保存设置"_s; }

void openSettings(ApplicationFixture &stage, SceneResources & /*resources*/)
{
    stage.open();
    stage.click(u"功能设置"_s);
    stage.waitFor(saveButton());
}

void fillSettings(ApplicationFixture &stage, SceneResources &resources)
{
    openSettings(stage, resources);
    stage.type(u"API Key"_s, SceneResources::key());
}

void saveWithoutKey(ApplicationFixture &stage, SceneResources &resources)
{
    openSettings(stage, resources);
    stage.click(saveButton());
    stage.waitFor(u"请填写 API Key"_s);
}

void save(ApplicationFixture &stage)
{
    stage.click(saveButton());
    stage.waitFor(u"好的"_s);
}

void openHelp(ApplicationFixture &stage, SceneResources & /*resources*/)
{
    stage.open();
    stage.click(u"帮助说明"_s);
}

void copyAnAddress(ApplicationFixture &stage, SceneResources &resources)
{
    openHelp(stage, resources);
    stage.click(u"客服邮箱："_s + AboutInformation::current().email);
}

} // namespace

QList<Scene> otherScenes()
{
    using enum Scene::Sizes;
    return {
        {u"settings"_s, u"功能设置"_s, common, {}, fillSettings},
        {u"validation"_s, u"功能设置：缺少 API Key"_s, common, {}, saveWithoutKey},
        {u"alert"_s, u"功能设置：已保存"_s, common, {}, fillSettings, save},
        {u"help"_s, u"帮助说明"_s, common, {}, openHelp},
        {u"toast"_s, u"帮助说明：已复制"_s, common, {}, copyAnAddress},
    };
}

} // namespace quilmora::gallery
