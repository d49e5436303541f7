#pragma once

#include <QWidget>

namespace quilmora
{

class DisclosureHeader;
class TextEditor;

/// The last part of the form: further style instructions, which can be folded away. They count all the same.
class AdvancedSection final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(AdvancedSection)

public:
    explicit AdvancedSection(QWidget *parent = nullptr);
    ~AdvancedSection() override = default;

    QString advancedText() const;

private:
    DisclosureHeader *header;
    QWidget *body;
    TextEditor *editor;
};

} // namespace quilmora
