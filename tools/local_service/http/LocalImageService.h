#pragma once

#include "local_service/http/LocalServiceOptions.h"

#include <QtGlobal>

#include <memory>

class QUrl;

namespace quilmora
{

/// An HTTP server on 127.0.0.1 with the public interface of the image service. It composes the covers
/// itself, needs no account and no network, and gives the same picture for the same request.
///
/// Besides the generation path it serves its pictures below "/pictures/" and its counts at "/stats".
/// It works on threads of its own and needs no event loop, but a QGuiApplication for its fonts.
/// start() and stop() belong to one thread; everything else may be called from any.
class LocalImageService final
{
public:
    explicit LocalImageService(const LocalServiceOptions &options = {});
    /// Stops the service.
    ~LocalImageService();
    Q_DISABLE_COPY_MOVE(LocalImageService)

    /// Begins to answer and returns the port; 0 when the port cannot be had. Once per object.
    quint16 start();
    /// Ends waiting requests with a 503 and returns when all threads are done.
    void stop();

    quint16 port() const;
    /// The address to send generation requests to. Valid after start().
    QUrl endpoint() const;

    int requestCount() const;  ///< Generation requests received, good and bad.
    int answeredCount() const; ///< Generation requests answered with a picture.
    int underWayCount() const; ///< Generation requests being worked on now.
    int mostAtOnce() const;    ///< The highest number of requests ever under way together.

private:
    class Server;
    std::unique_ptr<Server> m_server;
};

} // namespace quilmora
