#include "screens/generate/GenerateCoverView.h"

#include "platform/Timestamp.h"
#include "screens/generate/ErrorSection.h"
#include "screens/generate/GenerateForm.h"
#include "screens/generate/LoadingSection.h"
#include "screens/generate/ResultSection.h"
#include "ui/dialogs/FileDialogs.h"
#include "ui/theme/Measures.h"

#include <QApplication>
#include <QScrollBar>
#include <QVBoxLayout>

#include <utility>

namespace quilmora {
GenerateCoverView::GenerateCoverView(std::shared_ptr<CoverGenerationFlow> flow, FileDialogs &dialogs,
                                     QWidget *parent)
    : ScrollPage{parent},
      m_flow{std::move(flow)},
      m_dialogs{dialogs},
      m_form{new GenerateForm{dialogs, content()}},
      m_column{new QVBoxLayout{content()}}
{
    m_column->setContentsMargins(measures::pagePadding, measures::pagePadding, measures::pagePadding,
                                 measures::pagePadding);
    m_column->setSpacing(0);
    m_column->addWidget(m_form);
    m_column->addStretch();
    connect(m_form, &GenerateForm::generateRequested, this, &GenerateCoverView::start);
    connect(m_flow.get(), &CoverGenerationFlow::generationStateChanged, this, &GenerateCoverView::showState);
}

void GenerateCoverView::start() { m_flow->startGeneration(m_form->inputs()); }

void GenerateCoverView::showState()
{
    // A result may arrive while a tab has the focus.
    const QWidget *focused = QApplication::focusWidget();
    const bool takesFocus = focused == nullptr || isAncestorOf(focused);
    if (m_section != nullptr) {
        m_section->hide();
        // Later, since one of its buttons may have caused the change.
        m_section->deleteLater();
    }
    m_section = makeSection(m_flow->generationState());
    m_form->setVisible(m_section == nullptr);
    if (m_section == nullptr) {
        m_form->focusTitle();
        return;
    }
    m_column->insertWidget(0, m_section, 1);
    verticalScrollBar()->setValue(0);
    showAtOnce();
    if (takesFocus) {
        m_section->setFocus();
    }
}

void GenerateCoverView::showAtOnce()
{
    // Encoding the pictures, which comes next, blocks the main thread for a while. Layouts show new widgets
    // and apply changed sizes only later.
    m_section->show();
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
        connect(error, &ErrorSection::returnRequested, m_flow.get(), &CoverGenerationFlow::reset);
        return error;
    }
    if (const auto *success = std::get_if<generationState::Success>(&state)) {
        auto *result = new ResultSection{success->image, content()};
        connect(result, &ResultSection::returnRequested, m_flow.get(), &CoverGenerationFlow::reset);
        connect(result, &ResultSection::saveRequested, this, &GenerateCoverView::saveImage);
        return result;
    }
    return nullptr;
}

void GenerateCoverView::saveImage()
{
    const auto *success = std::get_if<generationState::Success>(&m_flow->generationState());
    const QImage &latest = m_flow->generatedImage();
    const QImage image = latest.isNull() && success != nullptr ? success->image : latest;
    exportCover(image, now(), m_dialogs, this);
}

} // namespace quilmora
