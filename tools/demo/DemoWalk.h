#pragma once

#include <QDeadlineTimer>
#include <QList>
#include <QObject>

#include <functional>

namespace quilmora {

class DemoFolder;

/// Makes one cover through the window, step by step, each as soon as the window is ready for it.
class DemoWalk final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(DemoWalk)

public:
    /// `folder` must outlive the walk. With `wholeWay` the walk goes on to the exported cover and takes
    /// pictures of every screen; without it the form is filled and left to the user.
    DemoWalk(const DemoFolder &folder, bool wholeWay);
    ~DemoWalk() override = default;

    void start();

Q_SIGNALS:
    /// All steps are done.
    void finished();

    /// A step could not be made in time.
    void failed(const QString &step);

private:
    struct Step {
        QString description;
        std::function<bool()> isReady;
        std::function<void()> action;
    };

    void addStep(const QString &description, const std::function<bool()> &isReady,
                 const std::function<void()> &action);
    void addClick(const QString &description, const QString &control);
    void addText(const QString &description, const QString &field, const QString &text);
    void addPicture(const QString &card, const QString &path);
    void addScreenshot(const QString &name, const QString &control);
    QString freshScreenshot(const QString &name) const;
    void addFormSteps();
    void addGenerationSteps();
    void addHistorySteps();
    void advance();

    const DemoFolder &m_folder;
    const bool m_wholeWay;
    QList<Step> m_steps;
    qsizetype m_next = 0;
    QDeadlineTimer m_deadline;
};

} // namespace quilmora
