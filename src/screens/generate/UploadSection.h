#pragma once

#include "screens/generate/FormSection.h"

#include <QImage>

namespace quilmora
{

class FilePanels;
class UploadCard;

/// The fourth part of the form: the reference pictures.
class UploadSection final : public FormSection
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(UploadSection)

public:
    /// `panels` must outlive the section.
    explicit UploadSection(FilePanels &panels, QWidget *parent = nullptr);
    ~UploadSection() override = default;

    /// Null for none.
    QImage faceImage() const;
    QImage styleImage() const;

private:
    UploadCard *face;
    UploadCard *style;
};

} // namespace quilmora
