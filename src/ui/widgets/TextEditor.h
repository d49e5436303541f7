#pragma once

#include <QPlainTextEdit>

namespace quilmora {

/// A plain text of several lines, framed like a text field.
class TextEditor : public QPlainTextEdit
{
    Q_OBJECT

public:
    /// `pixelSize` of the system font.
    explicit TextEditor(int pixelSize, QWidget *parent = nullptr);

    /// With line feeds between lines. Unlike toPlainText() it keeps no-break spaces.
    QString text() const;

protected:
    virtual bool isFramed() const { return true; }

    bool event(QEvent *event) override;
    bool viewportEvent(QEvent *event) override;
    void insertFromMimeData(const QMimeData *source) override;

private:
    void paintFrame();
};

} // namespace quilmora
