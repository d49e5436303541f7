#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>

#include <mutex>

namespace quilmora
{

/// The finished pictures that can be fetched by address, the newest ones only. Thread-safe.
class PictureShelf final
{
public:
    static constexpr qsizetype capacity = 64; ///< Pictures kept; older ones are forgotten.

    /// Keeps `picture` and returns its name, which is made from its bytes.
    QString put(const QByteArray &picture);
    /// The bytes of the picture with this name, empty when there is none (any more).
    QByteArray find(const QString &name) const;

private:
    mutable std::mutex m_mutex;
    QHash<QString, QByteArray> m_pictures;
    QList<QString> m_order;
};

} // namespace quilmora
