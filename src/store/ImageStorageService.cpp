#include "store/ImageStorageService.h"

#include "imaging/ImageCodec.h"
#include "model/PictureLimits.h"
#include "platform/Console.h"
#include "platform/Files.h"
#include "platform/Timestamp.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>

#include <utility>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

QString newFileName()
{
    // The number distinguishes covers of the same second.
    const int number = QRandomGenerator::system()->bounded(1000, 10000);
    return u"cover_"_s + localDateText(now(), u"yyyyMMdd_HHmmss"_s) + u'_' + QString::number(number) +
           u".png"_s;
}

} // namespace

QString coversFolder::path() { return userFolders::pictures() + u"/Quilmora/coverimg"_s; }

QString coversFolder::storedPath(const QString &name) { return u"~/Pictures/Quilmora/coverimg/"_s + name; }

ImageStorageService::ImageStorageService(QString directory) : m_coverImageDirectory{std::move(directory)}
{
    QDir{}.mkpath(m_coverImageDirectory);
}

ImageStorageService &ImageStorageService::shared()
{
    static ImageStorageService instance{coversFolder::path()};
    return instance;
}

std::optional<QString> ImageStorageService::saveImage(const QImage &image)
{
    const QByteArray png = imageCodec::encodePng(image);
    if (png.isEmpty()) {
        return std::nullopt;
    }
    const QString name = newFileName();
    if (const auto error = writeFile(m_coverImageDirectory + u'/' + name, png)) {
        console::printLine(u"保存图片失败: "_s + *error);
        return std::nullopt;
    }
    return coversFolder::storedPath(name);
}

QImage ImageStorageService::loadImage(const QString &path) const
{
    return imageCodec::decodeFile(userFolders::expandTilde(path), pictureLimits::file);
}

void ImageStorageService::deleteImage(const QString &path) { QFile::remove(userFolders::expandTilde(path)); }

} // namespace quilmora
