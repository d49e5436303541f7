#pragma once

#include "model/Emotion.h"
#include "screens/generate/FormSection.h"

class QLineEdit;

namespace quilmora
{

/// The third part of the form: which expression the presenter shows.
class ExpressionSection final : public FormSection
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ExpressionSection)

public:
    explicit ExpressionSection(QWidget *parent = nullptr);
    ~ExpressionSection() override = default;

    const Emotion &selectedEmotion() const { return selected; }

    /// What was typed as an expression of the user's own, also while another one is selected.
    QString customEmotion() const;

private:
    void select(const Emotion &emotion);

    Emotion selected;
    QLineEdit *customField = nullptr;
};

} // namespace quilmora
