#pragma once

#include "generation/CoverGenerationFlow.h"
#include "ui/widgets/ScrollPage.h"

#include <memory>

class QVBoxLayout;

namespace quilmora {

class FileDialogs;
class GenerateForm;

/// The screen on which a cover is described, generated and saved. The progress, the result or the error of a
/// generation replaces the form, which keeps its inputs.
class GenerateCoverView final : public ScrollPage
{
    Q_OBJECT

public:
    /// `dialogs` must outlive the screen. A running generation continues when the screen is destroyed.
    GenerateCoverView(std::shared_ptr<CoverGenerationFlow> flow, FileDialogs &dialogs,
                      QWidget *parent = nullptr);

private:
    void start();
    void showState();
    void showAtOnce();
    QWidget *makeSection(const CoverGenerationState &state);
    void saveImage();

    const std::shared_ptr<CoverGenerationFlow> m_flow;
    FileDialogs &m_dialogs;
    GenerateForm *m_form;
    QWidget *m_section = nullptr; ///< Replaces the form; null while the form is visible.
    QVBoxLayout *m_column;
};

} // namespace quilmora
