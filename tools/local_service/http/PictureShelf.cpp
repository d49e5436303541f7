#include "local_service/http/PictureShelf.h"

#include <QCryptographicHash>

namespace quilmora
{

QString PictureShelf::put(const QByteArray &picture)
{
    const QByteArray hash = QCryptographicHash::hash(picture, QCryptographicHash::Sha256);
    QString name = QString::fromLatin1(hash.toHex());
    const std::scoped_lock lock{m_mutex};
    m_order.removeOne(name);
    m_order.append(name);
    m_pictures.insert(name, picture);
    if (m_order.size() > capacity) {
        m_pictures.remove(m_order.takeFirst());
    }
    return name;
}

QByteArray PictureShelf::find(const QString &name) const
{
    const std::scoped_lock lock{m_mutex};
    return m_pictures.value(name);
}

} // namespace quilmora
