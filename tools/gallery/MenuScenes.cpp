#include "gallery/ApplicationFixture.h"
#include "gallery/Scene.h"

using namespace Qt::StringLiterals;

namespace quilmora::gallery {
namespace {

QString titleField() { return u"视频封面标题文本"_s; }

QString styleEditor() { return u"自定义风格指令（如\"使用蓝金配色\"、\"更戏剧化\"、\"保留原来的穿着\"）"_s; }

QString message() { return u"错误信息"_s; }

/// Types into a field and copies it, so that there is something to paste.
void write(ApplicationFixture &stage, const QString &field, const QString &text)
{
    stage.type(field, text);
    stage.press(QKeySequence::SelectAll);
    stage.press(QKeySequence::Copy);
}

void selectTitle(ApplicationFixture &stage, SceneResources & /*resources*/)
{
    stage.open();
    write(stage, titleField(), u"这个秘密改变了一切"_s);
}

void openFieldMenu(ApplicationFixture &stage) { stage.openMenu(titleField(), u"复制"_s); }

void writeInstructions(ApplicationFixture &stage, SceneResources & /*resources*/)
{
    stage.open();
    write(stage, styleEditor(), u"使用蓝金配色，更戏剧化，保留原来的穿着"_s);
    stage.press(QKeySequence::MoveToEndOfLine);
}

void openEditorMenu(ApplicationFixture &stage) { stage.openMenu(styleEditor(), u"粘贴"_s); }

void selectMessage(ApplicationFixture &stage, SceneResources & /*resources*/)
{
    stage.open();
    stage.type(titleField(), u"这个秘密改变了一切"_s);
    stage.click(u"开始生成封面"_s);
    stage.waitFor(message());
}

void openMessageMenu(ApplicationFixture &stage) { stage.openMenu(message(), u"全选"_s); }

} // namespace

QList<Scene> menuScenes()
{
    using enum Scene::Sizes;
    return {
        {u"menu-field"_s, u"右键菜单：单行文本"_s, common, {}, selectTitle, openFieldMenu},
        {u"menu-editor"_s, u"右键菜单：多行文本"_s, common, u"开始生成封面"_s, writeInstructions,
         openEditorMenu},
        {u"menu-message"_s, u"右键菜单：错误信息"_s, common, {}, selectMessage, openMessageMenu},
    };
}

} // namespace quilmora::gallery
