#pragma once

#include "ui/dialogs/FileDialogs.h"

#include <QList>
#include <QStringList>

#include <functional>

namespace quilmora::test {

/// File panels that are answered by the test instead of the user. Each answer is used once; a panel that
/// nobody prepared an answer for is cancelled.
class ScriptedFileDialogs final : public FileDialogs
{
public:
    using Answer = std::optional<QString>;

    /// The next panel for a picture gives `answer`; without a value it is cancelled. `beforeClosing` runs
    /// while the panel is open.
    void answerReference(const Answer &answer, const std::function<void()> &beforeClosing = {})
    {
        m_references.append({answer, beforeClosing});
    }
    /// The same for the next panel that asks where to save.
    void answerDestination(const Answer &answer, const std::function<void()> &beforeClosing = {})
    {
        m_destinations.append({answer, beforeClosing});
    }

    std::optional<QString> chooseReferenceImage(QWidget * /*parent*/) override
    {
        ++m_referencePanels;
        return next(m_references);
    }
    std::optional<QString> chooseCoverDestination(QWidget * /*parent*/, const QString &proposedName) override
    {
        m_names.append(proposedName);
        return next(m_destinations);
    }

    /// How often a picture was asked for.
    qsizetype referencePanelCount() const { return m_referencePanels; }
    /// The names that were proposed for saving, in order.
    const QStringList &proposedNames() const { return m_names; }

private:
    struct Step {
        Answer answer;
        std::function<void()> beforeClosing;
    };
    static Answer next(QList<Step> &steps)
    {
        const Step step = steps.isEmpty() ? Step{} : steps.takeFirst();
        if (step.beforeClosing) {
            step.beforeClosing();
        }
        return step.answer;
    }

    QList<Step> m_references;
    QList<Step> m_destinations;
    qsizetype m_referencePanels = 0;
    QStringList m_names;
};

} // namespace quilmora::test
