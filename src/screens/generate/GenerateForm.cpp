#include "screens/generate/GenerateForm.h"

#include "generation/CoverPrompt.h"
#include "screens/generate/AdvancedSection.h"
#include "screens/generate/ContentSection.h"
#include "screens/generate/ExpressionSection.h"
#include "screens/generate/GenerateButton.h"
#include "screens/generate/SizeSection.h"
#include "screens/generate/UploadSection.h"

#include <QVBoxLayout>

namespace quilmora
{
namespace
{

constexpr int sectionSpacing = 24;
constexpr int buttonTopPadding = 4;

} // namespace

GenerateForm::GenerateForm(FilePanels &panels, QWidget *parent)
    : QWidget{parent},
      size{new SizeSection{this}},
      content{new ContentSection{this}},
      expression{new ExpressionSection{this}},
      upload{new UploadSection{panels, this}},
      advanced{new AdvancedSection{this}},
      button{new GenerateButton{this}}
{
    auto *column = new QVBoxLayout{this};
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(sectionSpacing);
    for (QWidget *section : std::initializer_list<QWidget *>{size, content, expression, upload, advanced}) {
        column->addWidget(section);
    }
    auto *buttonRow = new QVBoxLayout;
    buttonRow->setContentsMargins(0, buttonTopPadding, 0, 0);
    buttonRow->addWidget(button);
    column->addLayout(buttonRow);

    connect(content, &ContentSection::shownTitleChanged, this, &GenerateForm::updateButton);
    connect(button, &GenerateButton::clicked, this, &GenerateForm::requestGeneration);
    updateButton();
}

CoverInputs GenerateForm::inputs() const
{
    return {.selectedSize = size->selectedSize(),
            .titleText = content->titleText(),
            .sceneText = content->sceneText(),
            .selectedEmotion = expression->selectedEmotion(),
            .customEmotion = expression->customEmotion(),
            .faceImage = upload->faceImage(),
            .styleImage = upload->styleImage(),
            .advancedText = advanced->advancedText()};
}

void GenerateForm::focusTitle()
{
    content->focusTitle();
}

void GenerateForm::updateButton()
{
    button->setEnabled(!withoutOuterBlanks(content->shownTitle()).isEmpty());
}

void GenerateForm::requestGeneration()
{
    // The button commits what is being composed, but an input method may drop it instead.
    if (!withoutOuterBlanks(content->titleText()).isEmpty()) {
        Q_EMIT generateRequested();
    }
}

} // namespace quilmora
