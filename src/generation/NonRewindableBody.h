#pragma once

#include <QByteArray>
#include <QIODevice>

namespace quilmora {

/// The body of a request that must not be sent twice. QNetworkAccessManager silently repeats a request whose
/// connection was lost before the answer, and for that rewinds its body: this one refuses, so the request
/// fails instead.
class NonRewindableBody final : public QIODevice
{
    Q_OBJECT

public:
    explicit NonRewindableBody(QByteArray body, QObject *parent = nullptr);

    qint64 size() const override { return m_body.size(); }

    /// Always false: the body cannot be read from its start once more.
    bool reset() override { return false; }

protected:
    qint64 readData(char *data, qint64 maximum) override;
    qint64 writeData(const char *data, qint64 size) override;

private:
    const QByteArray m_body;
};

} // namespace quilmora
