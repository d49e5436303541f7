#include "platform/PictureReduction.h"

#include "platform/ImageCodec.h"

#include <QFileInfo>

namespace quilmora
{
namespace
{

/// Wider rows would take too long for a slice.
constexpr int widest = 1 << 16;

/// Whether nobody would refuse the picture for its size, whatever form its pixels take in memory.
bool isModest(QSize size)
{
    constexpr qint64 mostBytesPerPixel = 8;
    return size.width() <= widest && qint64{size.width()} * size.height() * mostBytesPerPixel <=
                                         qint64{imageCodec::maximumBitmapMebibytes} << 20;
}

} // namespace

PictureReduction::PictureReduction(const QString &pathOfFile, QSize place)
    : path{pathOfFile},
      box{place},
      file{pathOfFile}
{
}

bool PictureReduction::advance(QDeadlineTimer until)
{
    switch (stage) {
    case Stage::opening:
        stage = open();
        break;
    case Stage::rows:
        stage = readRows(until);
        break;
    case Stage::end:
        stage = readEnd();
        break;
    case Stage::whole:
        stage = readWhole();
        break;
    case Stage::done:
        break;
    }
    return stage == Stage::done;
}

PictureReduction::Stage PictureReduction::open()
{
    // Opening a pipe would wait for a writer.
    if (!QFileInfo{path}.isFile() || !file.open(QIODevice::ReadOnly) ||
        file.size() > imageCodec::maximumFileBytes) {
        return Stage::done;
    }
    rows = std::make_unique<PngReader>(file);
    if (!rows->open() || !isModest(rows->size())) {
        return Stage::whole;
    }
    const QSize size = rows->size();
    const QSize fitted = size.scaled(box, Qt::KeepAspectRatio).expandedTo({1, 1}).boundedTo(size);
    reduction.emplace(size, fitted, rows->channels(), rows->depth());
    row.resize(static_cast<std::size_t>(rows->bytesPerRow()));
    rowsLeft = size.height();
    return Stage::rows;
}

PictureReduction::Stage PictureReduction::readRows(QDeadlineTimer until)
{
    do {
        if (!rows->read(row.data())) {
            return Stage::whole;
        }
        reduction->add(row.data());
        --rowsLeft;
    } while (rowsLeft > 0 && !until.hasExpired());
    return rowsLeft > 0 ? Stage::rows : Stage::end;
}

PictureReduction::Stage PictureReduction::readEnd()
{
    if (!rows->finish()) {
        return Stage::whole;
    }
    picture = reduction->image();
    return Stage::done;
}

PictureReduction::Stage PictureReduction::readWhole()
{
    picture = imageCodec::decodeFile(path);
    return Stage::done;
}

} // namespace quilmora
