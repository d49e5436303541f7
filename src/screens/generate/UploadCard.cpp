#include "screens/generate/UploadCard.h"

#include "platform/ImageCodec.h"
#include "screens/common/AccessiblePart.h"
#include "screens/common/ActionButton.h"
#include "screens/common/ErrorLine.h"
#include "screens/common/FilePanels.h"
#include "screens/common/ReadingOrder.h"
#include "screens/common/TextLabel.h"
#include "screens/generate/UploadFace.h"

#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

constexpr double maximumMegabytes = 10.0;

/// Why the file's attributes cannot be read; nothing when they can.
std::optional<QString> attributesError(const QString &path)
{
    // A link that leads nowhere has attributes of its own; it is the picture that cannot be read then.
    const QFileInfo info{path};
    if (info.exists() || info.isSymLink()) {
        return std::nullopt;
    }
    // Attributes are read without a reason for failing; opening gives it.
    QFile file{path};
    return file.open(QIODevice::ReadOnly) ? std::nullopt : std::optional{file.errorString()};
}

} // namespace

UploadCard::UploadCard(const QString &title, const QString &iconName, FilePanels &thePanels, QWidget *parent)
    : QWidget{parent},
      panels{thePanels},
      face{new UploadFace{title, iconName, this}},
      errorLine{new ErrorLine{11, this}},
      removeButton{new ActionButton{
          u"xmark.circle"_s, u"移除"_s, {ActionButton::Kind::plainRed, 11, QFont::Normal, 4, {0, 2}}, this}}
{
    removeButton->setAccessibleDescription(title);
    removeButton->hide();
    connect(face, &UploadFace::clicked, this, &UploadCard::chooseFile);
    connect(removeButton, &ActionButton::clicked, this, &UploadCard::removeImage);

    auto *column = new QVBoxLayout{this};
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    column->addWidget(new TextLabel{title, {12, QFont::Normal, ColorRole::secondaryText}, this});
    column->addWidget(face);
    column->addWidget(errorLine);
    column->addWidget(removeButton, 0, Qt::AlignLeft);
    column->addStretch();
    readInLayoutOrder(*column);
}

void UploadCard::chooseFile()
{
    errorLine->setMessage({});
    // The panel is modal, but the window can still be closed under it.
    const QPointer<UploadCard> self{this};
    const auto path = panels.chooseReferenceImage(this);
    if (self != nullptr && path) {
        load(*path);
    }
}

void UploadCard::load(const QString &path)
{
    if (const auto error = attributesError(path)) {
        errorLine->setMessage(u"读取文件失败："_s + *error);
        return;
    }
    const double megabytes = static_cast<double>(QFileInfo{path}.size()) * (1.0 / 1024) * (1.0 / 1024);
    if (megabytes > maximumMegabytes) {
        errorLine->setMessage(u"图片过大（%1M），不能超过 10M"_s.arg(megabytes, 0, 'f', 1));
        return;
    }
    setImage(imageCodec::decodeFile(path), QFileInfo{path}.fileName());
}

void UploadCard::removeImage()
{
    announce(this, u"已移除"_s);
    // Before the button that has the focus is hidden.
    face->setFocus();
    setImage({}, {});
}

void UploadCard::setImage(const QImage &image, const QString &fileName)
{
    picture = image;
    face->setImage(image, fileName);
    removeButton->setVisible(!image.isNull());
}

} // namespace quilmora
