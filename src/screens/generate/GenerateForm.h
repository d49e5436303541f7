#pragma once

#include "generation/CoverInputs.h"

#include <QWidget>

namespace quilmora
{

class AdvancedSection;
class ContentSection;
class ExpressionSection;
class FilePanels;
class GenerateButton;
class SizeSection;
class UploadSection;

/// The form in which a cover is described.
class GenerateForm final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(GenerateForm)

public:
    /// `panels` must outlive the form.
    explicit GenerateForm(FilePanels &panels, QWidget *parent = nullptr);
    ~GenerateForm() override = default;

    /// Everything as it is chosen and typed now.
    CoverInputs inputs() const;

    void focusTitle();

Q_SIGNALS:
    void generateRequested();

private:
    void updateButton();
    void requestGeneration();

    SizeSection *size;
    ContentSection *content;
    ExpressionSection *expression;
    UploadSection *upload;
    AdvancedSection *advanced;
    GenerateButton *button;
};

} // namespace quilmora
