#pragma once

#include "ui/widgets/TextEditor.h"

#include <QString>

#include <vector>

namespace quilmora {

/// Splits a long text into paragraphs that QPlainTextEdit lays out quickly: very long lines get additional
/// breaks, and many short lines share a paragraph. Maps positions in the shown text to the original.
class MessageLines final
{
public:
    explicit MessageLines(QString text);

    /// The original with additional breaks, and with one character for every break.
    const QString &shown() const { return m_display; }

    /// The original text between two positions of shown().
    QString originalBetween(qsizetype from, qsizetype to) const;

private:
    void appendLine(qsizetype from, qsizetype to);
    /// The end of shown() so far corresponds to `place` in the original.
    void mark(qsizetype place);
    qsizetype originalPlace(qsizetype displayPlace) const;

    struct Mark {
        qsizetype displayPlace;
        qsizetype originalPlace;
    };

    QString m_original;
    QString m_display;
    std::vector<Mark> m_marks; ///< Sorted. Between two of them the distances are equal.
};

/// A message of the service as centered plain text that can be selected and copied unchanged. As high as its
/// lines; higher ones scroll inside a frame. Very long messages do not block the window.
class MessageView final : public TextEditor
{
    Q_OBJECT

public:
    /// `pixelSize` of the system font. `accessibleName` is the kind of message.
    MessageView(const QString &message, int pixelSize, const QString &accessibleName,
                QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {0, 0}; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool isFramed() const override;
    QMimeData *createMimeDataFromSelection() const override;

private:
    /// Of all lines at that width; of higher texts only the first lines, which are too high for a view
    /// without a frame.
    double textHeight(int width) const;

    const MessageLines m_lines;
};

} // namespace quilmora
