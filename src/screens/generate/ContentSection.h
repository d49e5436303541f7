#pragma once

#include "screens/generate/FormSection.h"

namespace quilmora
{

class LabelledField;

/// The second part of the form: what the cover says and what its background shows.
class ContentSection final : public FormSection
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ContentSection)

public:
    explicit ContentSection(QWidget *parent = nullptr);
    ~ContentSection() override = default;

    QString titleText() const;
    /// The title with what an input method is composing in its field.
    QString shownTitle() const;
    QString sceneText() const;

    /// Puts the keyboard focus into the title's field.
    void focusTitle();

Q_SIGNALS:
    void shownTitleChanged();

private:
    LabelledField *title;
    LabelledField *scene;
};

} // namespace quilmora
