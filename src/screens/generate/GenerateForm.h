#pragma once

#include "model/CoverInputs.h"

#include <QWidget>

class QLineEdit;

namespace quilmora {

class FileDialogs;
class LabeledField;
class PaintedButton;
class TextEditor;
class UploadCard;

/// The form in which a cover is described.
class GenerateForm final : public QWidget
{
    Q_OBJECT

public:
    /// `dialogs` must outlive the form.
    explicit GenerateForm(FileDialogs &dialogs, QWidget *parent = nullptr);

    /// Everything as it is chosen and typed now.
    CoverInputs inputs() const;

    void focusTitle();

Q_SIGNALS:
    void generateRequested();

private:
    QWidget *makeSizeSection();
    QWidget *makeContentSection();
    QWidget *makeEmotionSection();
    QWidget *makeUploadSection(FileDialogs &dialogs);
    QWidget *makeAdvancedSection();
    void selectEmotion(const Emotion &emotion);
    void updateButton();
    void requestGeneration();

    CoverSize m_size;
    LabeledField *m_title = nullptr;
    LabeledField *m_scene = nullptr;
    Emotion m_emotion;
    QLineEdit *m_customEmotion = nullptr; ///< Visible while the custom emotion is selected.
    UploadCard *m_face = nullptr;
    UploadCard *m_style = nullptr;
    TextEditor *m_advanced = nullptr;
    PaintedButton *m_button = nullptr;
};

} // namespace quilmora
