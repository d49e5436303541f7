#pragma once

#include "model/CoverSize.h"
#include "screens/generate/FormSection.h"

namespace quilmora
{

/// The first part of the form: which size the cover gets.
class SizeSection final : public FormSection
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SizeSection)

public:
    explicit SizeSection(QWidget *parent = nullptr);
    ~SizeSection() override = default;

    const CoverSize &selectedSize() const { return selected; }

private:
    CoverSize selected;
};

} // namespace quilmora
