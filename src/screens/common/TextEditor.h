#pragma once

#include <QPlainTextEdit>

namespace quilmora
{

/// A plain text of several lines on the text background colour with a thin rounded border.
class TextEditor : public QPlainTextEdit
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TextEditor)

public:
    /// `pixelSize` of the system font.
    explicit TextEditor(int pixelSize, QWidget *parent = nullptr);
    ~TextEditor() override = default;

    /// What was typed, character by character, with line feeds between lines. (Qt's own plain text
    /// turns other blanks into common ones.)
    QString text() const;

protected:
    /// Whether the ground and the border are drawn.
    virtual bool isFramed() const { return true; }

    bool event(QEvent *event) override;
    bool viewportEvent(QEvent *event) override;
    void insertFromMimeData(const QMimeData *source) override;

private:
    void paintFrame();
};

} // namespace quilmora
