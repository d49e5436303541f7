#include "support/ScriptedFileDialogs.h"

namespace quilmora::test {

void ScriptedFileDialogs::answerReference(const Answer &answer, const std::function<void()> &beforeClosing)
{
    m_references.append({answer, beforeClosing});
}

void ScriptedFileDialogs::answerDestination(const Answer &answer, const std::function<void()> &beforeClosing)
{
    m_destinations.append({answer, beforeClosing});
}

std::optional<QString> ScriptedFileDialogs::chooseReferenceImage(QWidget * /*parent*/)
{
    ++m_referencePanels;
    return next(m_references);
}

std::optional<QString> ScriptedFileDialogs::chooseCoverDestination(QWidget * /*parent*/,
                                                                   const QString &proposedName)
{
    m_names.append(proposedName);
    return next(m_destinations);
}

ScriptedFileDialogs::Answer ScriptedFileDialogs::next(QList<Step> &steps)
{
    if (steps.isEmpty()) {
        return std::nullopt;
    }
    const Step step = steps.takeFirst();
    if (step.beforeClosing) {
        step.beforeClosing();
    }
    return step.answer;
}

} // namespace quilmora::test
