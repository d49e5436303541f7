#include "DemoWalk.h"

#include "DemoFolder.h"
#include "WindowDriver.h"
#include "platform/Console.h"

#include <QFile>
#include <QFileInfo>
#include <QTimer>

#include <chrono>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

/// Between two looks at whether the window is ready for the next step.
constexpr auto pollInterval = std::chrono::milliseconds{50};
constexpr auto stepLimit = std::chrono::seconds{60};

} // namespace

DemoWalk::DemoWalk(const DemoFolder &folder, bool theWholeWay) : m_folder{folder}, m_wholeWay{theWholeWay}
{
    addFormSteps();
    if (m_wholeWay) {
        addGenerationSteps();
        addHistorySteps();
    }
}

void DemoWalk::addFormSteps()
{
    addScreenshot(u"form-empty"_s, u"视频封面标题文本"_s);
    if (m_wholeWay) {
        addClick(u"Opening the settings"_s, u"功能设置"_s);
        addScreenshot(u"settings"_s, u"保存设置"_s);
        addClick(u"Back to the form"_s, u"生成封面"_s);
    }
    addPicture(u"人脸形象（必填）"_s, m_folder.presenterPhoto());
    addPicture(u"风格参考（上传示例封面，非必填）"_s, m_folder.sampleCover());
    addText(u"Typing the title"_s, u"视频封面标题文本"_s, u"这个秘密改变了一切"_s);
    addText(u"Typing the background"_s, u"背景场景"_s, u"未来科技感"_s);
    addClick(u"Choosing the expression"_s, u"惊喜"_s);
    addClick(u"Choosing the size"_s, u"YouTube"_s);
    addStep(
        u"Scrolling to the button"_s, [] { return windowDriver::isReady(u"开始生成封面"_s); },
        [] { windowDriver::reveal(u"开始生成封面"_s); });
    addScreenshot(u"form-filled"_s, u"开始生成封面"_s);
}

void DemoWalk::addGenerationSteps()
{
    addClick(u"Pressing the button"_s, u"开始生成封面"_s);
    addStep(
        u"Waiting for the cover"_s, [] { return windowDriver::find(u"开始生成封面"_s) == nullptr; },
        [path = freshScreenshot(u"generating"_s)] { windowDriver::saveScreenshot(path); });
    addScreenshot(u"result"_s, u"保存图片"_s);
    addStep(
        u"Saving the cover"_s, [] { return windowDriver::isReady(u"保存图片"_s); },
        [] { windowDriver::click(u"保存图片"_s); });
    addStep(u"Naming the file"_s, windowDriver::filePanelIsOpen,
            [path = freshScreenshot(u"save-panel"_s)] { windowDriver::saveScreenshot(path); });
    addStep(u"Confirming the file"_s, windowDriver::filePanelIsOpen,
            [this] { windowDriver::answerFileDialog(m_folder.exportedCover()); });
    addStep(
        u"The cover is saved"_s,
        [this] { return !windowDriver::filePanelIsOpen() && QFileInfo{m_folder.exportedCover()}.size() > 0; },
        [] {});
}

void DemoWalk::addHistorySteps()
{
    addClick(u"Opening the history"_s, u"已生成列表"_s);
    addStep(u"Picture of the screen: history"_s, windowDriver::historyIsFilled,
            [this] { windowDriver::saveScreenshot(m_folder.file(u"screen-history.png"_s)); });
    addStep(u"Opening the preview"_s, windowDriver::historyIsFilled, windowDriver::clickFirstCover);
    addScreenshot(u"preview"_s, u"关闭预览"_s);
    addClick(u"Closing the preview"_s, u"关闭预览"_s);
    addClick(u"Opening the help"_s, u"帮助说明"_s);
    addStep(
        u"Picture of the screen: help"_s, [] { return windowDriver::historyIsGone(); },
        [this] { windowDriver::saveScreenshot(m_folder.file(u"screen-help.png"_s)); });
}

void DemoWalk::addStep(const QString &description, const std::function<bool()> &isReady,
                       const std::function<void()> &action)
{
    m_steps.append({description, isReady, action});
}

void DemoWalk::addClick(const QString &description, const QString &control)
{
    addStep(
        description, [control] { return windowDriver::isReady(control); },
        [control] { windowDriver::click(control); });
}

void DemoWalk::addText(const QString &description, const QString &field, const QString &text)
{
    addStep(
        description, [field] { return windowDriver::isReady(field); },
        [field, text] { windowDriver::type(field, text); });
}

void DemoWalk::addPicture(const QString &card, const QString &path)
{
    addClick(u"Choosing a picture: "_s + QFileInfo{path}.fileName(), card);
    addStep(u"Answering the file panel"_s, windowDriver::filePanelIsOpen,
            [path] { windowDriver::answerFileDialog(path); });
    addStep(
        u"The picture is there"_s,
        [] { return !windowDriver::filePanelIsOpen() && windowDriver::isReady(u"移除"_s); }, [] {});
}

void DemoWalk::addScreenshot(const QString &name, const QString &control)
{
    if (m_wholeWay) {
        addStep(
            u"Picture of the screen: "_s + name, [control] { return windowDriver::isReady(control); },
            [path = freshScreenshot(name)] { windowDriver::saveScreenshot(path); });
    }
}

/// Where the picture of that screen goes; an earlier walk's is taken away.
QString DemoWalk::freshScreenshot(const QString &name) const
{
    QString path = m_folder.file(u"screen-"_s + name + u".png"_s);
    QFile::remove(path);
    return path;
}

void DemoWalk::start()
{
    m_deadline.setRemainingTime(stepLimit);
    QTimer::singleShot(pollInterval, this, &DemoWalk::advance);
}

void DemoWalk::advance()
{
    if (m_next == m_steps.size()) {
        Q_EMIT finished();
        return;
    }
    const Step &step = m_steps.at(m_next);
    const bool ready = step.isReady();
    if (ready) {
        ++m_next;
        console::printLine(u"[%1/%2] %3"_s.arg(m_next).arg(m_steps.size()).arg(step.description));
        m_deadline.setRemainingTime(stepLimit);
    } else if (m_deadline.hasExpired()) {
        Q_EMIT failed(step.description);
        return;
    }
    // Before the action: one that opens a modal panel does not return until the panel is closed.
    QTimer::singleShot(pollInterval, this, &DemoWalk::advance);
    if (ready) {
        step.action();
    }
}

} // namespace quilmora
