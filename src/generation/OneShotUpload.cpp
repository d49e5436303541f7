#include "generation/OneShotUpload.h"

#include <algorithm>
#include <utility>

namespace quilmora
{

OneShotUpload::OneShotUpload(QByteArray bytes, QObject *parent) : QIODevice{parent}, body{std::move(bytes)}
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint64 OneShotUpload::readData(char *data, qint64 maximum)
{
    const qint64 count = std::min<qint64>(maximum, body.size() - pos());
    std::copy_n(body.constData() + pos(), count, data);
    return count;
}

qint64 OneShotUpload::writeData(const char * /*data*/, qint64 /*size*/)
{
    return -1;
}

} // namespace quilmora
