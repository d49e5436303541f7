#pragma once

#include "local_service/http/GenerationHandler.h"

#include <memory>

class QUrl;

namespace quilmora::localservice {

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

    quint16 port() const { return m_port; }
    /// The address to send generation requests to. Valid after start().
    QUrl endpoint() const;
    GenerationHandler::Counts counts() const { return m_handler.counts(); }

private:
    struct Listener;

    void addRoutes();

    const quint16 m_wantedPort;
    quint16 m_port = 0;
    GenerationHandler m_handler;
    const std::unique_ptr<Listener> m_listener; ///< Keeps the HTTP library out of this header.
};

} // namespace quilmora::localservice
