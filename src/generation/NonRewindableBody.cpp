#include "generation/NonRewindableBody.h"

#include <algorithm>
#include <utility>

namespace quilmora {

NonRewindableBody::NonRewindableBody(QByteArray bytes, QObject *parent)
    : QIODevice{parent},
      m_body{std::move(bytes)}
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint64 NonRewindableBody::readData(char *data, qint64 maximum)
{
    const qint64 count = std::min<qint64>(maximum, m_body.size() - pos());
    std::copy_n(m_body.constData() + pos(), count, data);
    return count;
}

qint64 NonRewindableBody::writeData(const char * /*data*/, qint64 /*size*/)
{
    return -1;
}

} // namespace quilmora
