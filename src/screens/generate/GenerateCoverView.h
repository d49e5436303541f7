#pragma once

#include "model/CoverGenerationState.h"
#include "screens/common/ScrollPage.h"

#include <memory>

class QVBoxLayout;

namespace quilmora
{

class CoverGenerationFlow;
class FilePanels;
class GenerateForm;

/// The screen on which a cover is described, made and saved. In place of the form it shows the progress, the
/// result or the error of a generation; the form keeps its inputs meanwhile.
class GenerateCoverView final : public ScrollPage
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(GenerateCoverView)

public:
    /// `panels` must outlive the screen. A generation under way goes on when the screen is destroyed.
    GenerateCoverView(std::shared_ptr<CoverGenerationFlow> flow, FilePanels &panels,
                      QWidget *parent = nullptr);
    ~GenerateCoverView() override = default;

private:
    void start();
    void showState();
    void showAtOnce();
    QWidget *makeSection(const CoverGenerationState &state);
    void saveImage();

    const std::shared_ptr<CoverGenerationFlow> flow;
    FilePanels &panels;
    GenerateForm *form;
    QWidget *section = nullptr; ///< What stands in place of the form, if anything.
    QVBoxLayout *column;
};

} // namespace quilmora
