#include "support/ScriptedFilePanels.h"

namespace quilmora::test
{

void ScriptedFilePanels::answerReference(const Answer &answer, const std::function<void()> &beforeClosing)
{
    references.append({answer, beforeClosing});
}

void ScriptedFilePanels::answerDestination(const Answer &answer, const std::function<void()> &beforeClosing)
{
    destinations.append({answer, beforeClosing});
}

std::optional<QString> ScriptedFilePanels::chooseReferenceImage(QWidget * /*parent*/)
{
    ++referencePanels;
    return next(references);
}

std::optional<QString> ScriptedFilePanels::chooseCoverDestination(QWidget * /*parent*/,
                                                                  const QString &proposedName)
{
    names.append(proposedName);
    return next(destinations);
}

ScriptedFilePanels::Answer ScriptedFilePanels::next(QList<Step> &steps)
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
