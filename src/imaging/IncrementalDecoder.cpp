#include "imaging/IncrementalDecoder.h"

#include <QFileInfo>

namespace quilmora {

IncrementalDecoder::IncrementalDecoder(const QString &path, QSize box, const imageCodec::Limits &limits)
    : m_box{box},
      m_limits{limits},
      m_file{path}
{
}

bool IncrementalDecoder::isModest(QSize size) const
{
    // Wider rows would take too long for a slice.
    constexpr int widest = 1 << 16;
    // For 8 bytes a pixel, Qt's limit is half as many pixels.
    return size.width() <= widest && qint64{size.width()} * size.height() <= m_limits.pixels / 2;
}

bool IncrementalDecoder::advance(QDeadlineTimer until)
{
    switch (m_stage) {
    case Stage::opening:
        m_stage = open();
        break;
    case Stage::rows:
        m_stage = readRows(until);
        break;
    case Stage::end:
        m_stage = readEnd();
        break;
    case Stage::whole:
        m_picture = imageCodec::decodeFile(m_file.fileName(), m_limits);
        m_stage = Stage::done;
        break;
    case Stage::done:
        break;
    }
    return m_stage == Stage::done;
}

IncrementalDecoder::Stage IncrementalDecoder::open()
{
    // Opening a pipe would block until it has a writer.
    if (!QFileInfo{m_file}.isFile() || !m_file.open(QIODevice::ReadOnly) ||
        m_file.size() > m_limits.fileBytes) {
        return Stage::done;
    }
    m_rows = std::make_unique<PngReader>(m_file);
    if (!m_rows->open() || !isModest(m_rows->size())) {
        return Stage::whole;
    }
    const QSize size = m_rows->size();
    const QSize fitted = size.scaled(m_box, Qt::KeepAspectRatio).expandedTo({1, 1}).boundedTo(size);
    m_scaler.emplace(size, fitted, m_rows->channels(), m_rows->depth());
    m_row.resize(static_cast<std::size_t>(m_rows->bytesPerRow()));
    m_rowsLeft = size.height();
    return Stage::rows;
}

IncrementalDecoder::Stage IncrementalDecoder::readRows(QDeadlineTimer until)
{
    do {
        if (!m_rows->read(m_row.data())) {
            return Stage::whole;
        }
        m_scaler->add(m_row.data());
        --m_rowsLeft;
    } while (m_rowsLeft > 0 && !until.hasExpired());
    return m_rowsLeft > 0 ? Stage::rows : Stage::end;
}

IncrementalDecoder::Stage IncrementalDecoder::readEnd()
{
    if (!m_rows->finish()) {
        return Stage::whole;
    }
    m_picture = m_scaler->image();
    return Stage::done;
}

} // namespace quilmora
