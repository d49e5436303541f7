#include "screens/generate/UploadSection.h"

#include "screens/generate/UploadCard.h"

using namespace Qt::StringLiterals;

namespace quilmora
{

UploadSection::UploadSection(FilePanels &panels, QWidget *parent)
    : FormSection{4, u"上传照片"_s, parent},
      face{new UploadCard{u"人脸形象（必填）"_s, u"square.and.arrow.up"_s, panels, this}},
      style{new UploadCard{u"风格参考（上传示例封面，非必填）"_s, u"square.and.arrow.up"_s, panels, this}}
{
    auto *row = new QHBoxLayout;
    row->setSpacing(16);
    row->addWidget(face, 1);
    row->addWidget(style, 1);
    column()->addLayout(row);
}

QImage UploadSection::faceImage() const
{
    return face->image();
}

QImage UploadSection::styleImage() const
{
    return style->image();
}

} // namespace quilmora
