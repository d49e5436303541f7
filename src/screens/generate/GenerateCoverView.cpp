#include "screens/generate/GenerateCoverView.h"

#include "generation/CoverGenerationFlow.h"
#include "platform/PointInTime.h"
#include "screens/common/CoverExport.h"
#include "screens/generate/ErrorSection.h"
#include "screens/generate/GenerateForm.h"
#include "screens/generate/LoadingSection.h"
#include "screens/generate/ResultSection.h"

#include <QApplication>
#include <QScrollBar>
#include <QVBoxLayout>

#include <utility>

namespace quilmora
{
namespace
{

constexpr int padding = 32;

} // namespace

GenerateCoverView::GenerateCoverView(std::shared_ptr<CoverGenerationFlow> theFlow, FilePanels &thePanels,
                                     QWidget *parent)
    : ScrollPage{parent},
      flow{std::move(theFlow)},
      panels{thePanels},
      form{new GenerateForm{thePanels, content()}},
      column{new QVBoxLayout{content()}}
{
    column->setContentsMargins(padding, padding, padding, padding);
    column->setSpacing(0);
    column->addWidget(form);
    column->addStretch();
    connect(form, &GenerateForm::generateRequested, this, &GenerateCoverView::start);
    connect(flow.get(), &CoverGenerationFlow::generationStateChanged, this, &GenerateCoverView::showState);
}

void GenerateCoverView::start()
{
    flow->startGeneration(form->inputs());
}

void GenerateCoverView::showState()
{
    // A result may arrive while the user is at the tabs.
    const QWidget *focused = QApplication::focusWidget();
    const bool takesFocus = focused == nullptr || isAncestorOf(focused);
    if (section != nullptr) {
        section->hide();
        // Later: the change may come from one of its own buttons.
        section->deleteLater();
    }
    section = makeSection(flow->generationState());
    form->setVisible(section == nullptr);
    if (section == nullptr) {
        form->focusTitle();
        return;
    }
    column->insertWidget(0, section, 1);
    verticalScrollBar()->setValue(0);
    showAtOnce();
    if (takesFocus) {
        section->setFocus();
    }
}

void GenerateCoverView::showAtOnce()
{
    // Encoding the pictures, which comes next, keeps the main thread for a while. Layouts show what is put
    // into them, and pass on changed sizes, only later.
    section->show();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    repaint();
}

QWidget *GenerateCoverView::makeSection(const CoverGenerationState &state)
{
    if (std::holds_alternative<generationState::Generating>(state)) {
        return new LoadingSection{content()};
    }
    if (const auto *failure = std::get_if<generationState::Failure>(&state)) {
        auto *error = new ErrorSection{failure->message, content()};
        connect(error, &ErrorSection::returnRequested, flow.get(), &CoverGenerationFlow::reset);
        return error;
    }
    if (const auto *success = std::get_if<generationState::Success>(&state)) {
        auto *result = new ResultSection{success->image, content()};
        connect(result, &ResultSection::returnRequested, flow.get(), &CoverGenerationFlow::reset);
        connect(result, &ResultSection::saveRequested, this, &GenerateCoverView::saveImage);
        return result;
    }
    return nullptr;
}

void GenerateCoverView::saveImage()
{
    const auto *success = std::get_if<generationState::Success>(&flow->generationState());
    const QImage &latest = flow->generatedImage();
    const QImage image = latest.isNull() && success != nullptr ? success->image : latest;
    exportCover(image, now(), panels, this);
}

} // namespace quilmora
