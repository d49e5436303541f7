#include "support/SamplePictures.h"

#include <QCoreApplication>
#include <QDir>
#include <QImage>

using namespace Qt::StringLiterals;
using namespace quilmora::test;

namespace {

QList<QByteArray> pictures()
{
    const QImage image = samplePictures::picture({24, 18});
    QList<QByteArray> files{samplePictures::jpeg(image),         samplePictures::progressiveJpeg(image),
                            samplePictures::sidewaysJpeg(image), samplePictures::cmykJpeg(),
                            samplePictures::animatedGif(),       samplePictures::pngOfSize(1000)};
    for (const QImage::Format format :
         {QImage::Format_RGB888, QImage::Format_RGBA8888, QImage::Format_Grayscale8,
          QImage::Format_Grayscale16, QImage::Format_RGBA64, QImage::Format_Indexed8, QImage::Format_Mono}) {
        files.append(samplePictures::png(image.convertToFormat(format)));
    }
    for (const char bits : {'\1', '\2', '\4', '\10'}) {
        files.append(samplePictures::pngByHand({9, 5}, bits, 0, QByteArray(50, '\0')));
    }
    files.append(samplePictures::png(image).chopped(40));
    files.append(samplePictures::pngByHand({20000, 20000}, 8, 2, QByteArray(100, '\0')));
    return files;
}

QList<QByteArray> responses()
{
    const QByteArray picture = samplePictures::png(samplePictures::picture({4, 4})).toBase64();
    const QByteArray photo = samplePictures::jpeg(samplePictures::picture({4, 4})).toBase64();
    return {
        R"({"data":[{"b64_json":")" + picture + R"("}]})",
        R"({"created":1,"data":[{"b64_json":")" + photo + R"(","size":"4x4"},{}],"usage":{}})",
        R"({"data":[{"url":"http://127.0.0.1/a.png"}]})",
        R"({"data":[{"url":"data:image/png;base64,)" + picture + R"("}]})",
        R"({"data":[{"b64_json":"!!!","url":"http://127.0.0.1/a.png"}]})",
        R"({"error":{"code":"InvalidParameter","message":"bad \u4e00\ud83d\ude00","param":"size","type":"BadRequest"}})",
        R"({"error":{"code":400,"message":null}})",
        R"({"data":[{"error":{"message":"内容违规","code":"C"}}]})",
        R"({"data":[]})",
        R"({"data":[{},1]})",
        R"([1,2.5e9,true,null,"\\\"\n"])",
        "<html><body>502 Bad Gateway</body></html>",
        "\xff\xfe\x00",
        ""};
}

void write(const QString &folder, const QList<QByteArray> &seeds)
{
    int number = 0;
    for (const QByteArray &seed : seeds) {
        samplePictures::write(folder + u'/' + QString::number(++number), seed);
    }
}

} // namespace

/// Writes what the fuzzers begin with into the folder that is named.
int main(int argc, char *argv[])
{
    const QCoreApplication application{argc, argv};
    const QString folder = QCoreApplication::arguments().value(1);
    if (folder.isEmpty()) {
        qFatal("Name a folder");
    }
    write(folder + u"/picture"_s, pictures());
    write(folder + u"/response"_s, responses());
    return 0;
}
