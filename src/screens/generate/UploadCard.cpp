#include "screens/generate/UploadCard.h"

#include "model/PictureLimits.h"
#include "screens/generate/UploadButton.h"
#include "ui/accessibility/Accessibility.h"
#include "ui/dialogs/FileDialogs.h"
#include "ui/widgets/ActionButton.h"
#include "ui/widgets/ErrorLine.h"
#include "ui/widgets/TextLabel.h"

#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

constexpr double maximumMegabytes = 10.0;

/// Why the file's attributes cannot be read; nothing when they can.
std::optional<QString> attributesError(const QString &path)
{
    // A broken link has attributes; the picture cannot be read then.
    const QFileInfo info{path};
    if (info.exists() || info.isSymLink()) {
        return std::nullopt;
    }
    // Only opening the file gives the reason.
    QFile file{path};
    return file.open(QIODevice::ReadOnly) ? std::nullopt : std::optional{file.errorString()};
}

} // namespace

UploadCard::UploadCard(const QString &title, const QString &iconName, FileDialogs &dialogs, QWidget *parent)
    : QWidget{parent},
      m_dialogs{dialogs},
      m_face{new UploadButton{title, iconName, this}},
      m_errorLine{new ErrorLine{11, this}},
      m_removeButton{new ActionButton{
          u"xmark.circle"_s, u"移除"_s, {ActionButton::Kind::plain, 11, QFont::Normal, 4, {0, 2}}, this}}
{
    m_removeButton->setAccessibleDescription(title);
    m_removeButton->hide();
    connect(m_face, &UploadButton::clicked, this, &UploadCard::chooseFile);
    connect(m_removeButton, &ActionButton::clicked, this, &UploadCard::removeImage);

    auto *column = new QVBoxLayout{this};
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    column->addWidget(new TextLabel{title, {12, QFont::Normal, ColorRole::secondaryText}, this});
    column->addWidget(m_face);
    column->addWidget(m_errorLine);
    column->addWidget(m_removeButton, 0, Qt::AlignLeft);
    column->addStretch();
    readInLayoutOrder(*column);
}

void UploadCard::chooseFile()
{
    m_errorLine->setMessage({});
    // The window can be closed while the dialog is open.
    const QPointer<UploadCard> self{this};
    const auto path = m_dialogs.chooseReferenceImage(this);
    if (self != nullptr && path) {
        load(*path);
    }
}

void UploadCard::load(const QString &path)
{
    if (const auto error = attributesError(path)) {
        m_errorLine->setMessage(u"读取文件失败："_s + *error);
        return;
    }
    const double megabytes = static_cast<double>(QFileInfo{path}.size()) * (1.0 / 1024) * (1.0 / 1024);
    if (megabytes > maximumMegabytes) {
        m_errorLine->setMessage(u"图片过大（%1M），不能超过 10M"_s.arg(megabytes, 0, 'f', 1));
        return;
    }
    setImage(imageCodec::decodeFile(path, pictureLimits::file), QFileInfo{path}.fileName());
}

void UploadCard::removeImage()
{
    announce(this, u"已移除"_s);
    // Before the focused button is hidden.
    m_face->setFocus();
    setImage({}, {});
}

void UploadCard::setImage(const QImage &image, const QString &fileName)
{
    m_picture = image;
    m_face->setImage(image, fileName);
    m_removeButton->setVisible(!image.isNull());
}

} // namespace quilmora
