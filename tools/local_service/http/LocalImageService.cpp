#include "local_service/http/LocalImageService.h"

#include "local_service/http/GenerationHandler.h"

#include <QFileInfo>
#include <QUrl>

#include <atomic>
#include <chrono>
#include <httplib.h>
#include <sys/socket.h>
#include <thread>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

constexpr const char *host = "127.0.0.1";
constexpr const char *generationPath = "/api/v3/images/generations";
constexpr const char *statsPath = "/stats";
constexpr const char *picturesPattern = "/pictures/[0-9a-f]+\\.jpg";
/// Room for fourteen large photos as base64.
constexpr std::size_t largestBody = std::size_t{512} * 1024 * 1024;
/// Waiting requests hold a thread each.
constexpr std::size_t threads = 32;
constexpr time_t seconds = 30;

void send(httplib::Response &response, const GenerationHandler::Reply &reply)
{
    response.status = reply.status;
    response.set_content(reply.body.constData(), static_cast<std::size_t>(reply.body.size()),
                         "application/json; charset=utf-8");
}

QByteArray headerOf(const httplib::Request &request, const char *name)
{
    return QByteArray::fromStdString(request.get_header_value(name));
}

} // namespace

class LocalImageService::Server final
{
public:
    explicit Server(const LocalServiceOptions &options) : m_wantedPort{options.port}, m_handler{options}
    {
        configure();
        addRoutes();
    }
    ~Server() { stop(); }
    Q_DISABLE_COPY_MOVE(Server)

    quint16 start();
    void stop();
    quint16 port() const { return m_port; }
    const ServiceCounters &counters() const { return m_handler.counters(); }

private:
    void configure();
    void addRoutes();
    void sendPicture(const httplib::Request &request, httplib::Response &response);
    void explainError(const httplib::Request &request, httplib::Response &response);

    const quint16 m_wantedPort;
    quint16 m_port = 0;
    GenerationHandler m_handler;
    httplib::Server m_http;
    std::atomic<bool> m_ended = false;
    std::thread m_listener;
};

void LocalImageService::Server::configure()
{
    // The library's own choice lets a second service share a taken port, and half the requests go there.
    m_http.set_socket_options([](auto socket) {
        const int yes = 1;
        setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    });
    m_http.set_payload_max_length(largestBody);
    // One request a connection: an idle kept-alive connection would hold a thread.
    m_http.set_keep_alive_max_count(1);
    m_http.set_tcp_nodelay(true);
    m_http.set_read_timeout(seconds);
    m_http.set_write_timeout(seconds);
    m_http.new_task_queue = [] {
        return new httplib::ThreadPool{threads};
    };
}

void LocalImageService::Server::addRoutes()
{
    m_http.Post(generationPath, [this](const httplib::Request &request, httplib::Response &response) {
        send(response,
             m_handler.handle({headerOf(request, "Authorization"), headerOf(request, "Content-Type"),
                               QByteArray::fromStdString(request.body)}));
    });
    m_http.Get(statsPath, [this](const httplib::Request &, httplib::Response &response) {
        send(response, {200, counters().toJson()});
    });
    m_http.Get(picturesPattern, [this](const httplib::Request &request, httplib::Response &response) {
        sendPicture(request, response);
    });
    m_http.set_error_handler([this](const httplib::Request &request, httplib::Response &response) {
        explainError(request, response);
    });
}

void LocalImageService::Server::sendPicture(const httplib::Request &request, httplib::Response &response)
{
    const QString name = QFileInfo{QString::fromStdString(request.path)}.baseName();
    const QByteArray picture = m_handler.pictures().find(name);
    if (picture.isEmpty()) {
        response.status = 404;
        return;
    }
    response.set_content(picture.constData(), static_cast<std::size_t>(picture.size()), "image/jpeg");
}

/// Called for every status of 400 and above: those of the handlers have a body already.
void LocalImageService::Server::explainError(const httplib::Request &request, httplib::Response &response)
{
    if (!response.body.empty()) {
        return;
    }
    if (response.status != 404) {
        send(response, m_handler.refuse(ErrorEnvelope::ofStatus(response.status)));
    } else if (request.path == generationPath) {
        response.set_header("Allow", "POST");
        send(response, m_handler.refuse(ErrorEnvelope::wrongMethod(QString::fromStdString(request.method))));
    } else if (request.path == statsPath && request.method != "GET") {
        response.set_header("Allow", "GET");
        send(response, m_handler.refuse(ErrorEnvelope::wrongMethod(QString::fromStdString(request.method))));
    } else {
        send(response, m_handler.refuse(ErrorEnvelope::unknownPath(QString::fromStdString(request.path))));
    }
}

quint16 LocalImageService::Server::start()
{
    int bound = -1;
    if (m_wantedPort == 0) {
        bound = m_http.bind_to_any_port(host);
    } else if (m_http.bind_to_port(host, m_wantedPort)) {
        bound = m_wantedPort;
    }
    if (bound <= 0) {
        return 0;
    }
    m_port = static_cast<quint16>(bound);
    m_handler.setPictureAddress(u"http://%1:%2/pictures/"_s.arg(QLatin1StringView{host}).arg(m_port));
    m_listener = std::thread{[this] {
        m_http.listen_after_bind();
        m_ended = true;
    }};
    // A stop() before the listener runs would be lost, and the listener would never end.
    while (!m_http.is_running() && !m_ended) {
        std::this_thread::sleep_for(std::chrono::milliseconds{1});
    }
    return m_port;
}

void LocalImageService::Server::stop()
{
    m_handler.shutDown();
    if (m_listener.joinable()) {
        m_http.stop();
        m_listener.join();
    }
}

LocalImageService::LocalImageService(const LocalServiceOptions &options)
    : m_server{std::make_unique<Server>(options)}
{
}

LocalImageService::~LocalImageService() = default;

quint16 LocalImageService::start()
{
    return m_server->start();
}

void LocalImageService::stop()
{
    m_server->stop();
}

quint16 LocalImageService::port() const
{
    return m_server->port();
}

QUrl LocalImageService::endpoint() const
{
    QUrl url;
    url.setScheme(u"http"_s);
    url.setHost(QString::fromLatin1(host));
    url.setPort(port());
    url.setPath(QString::fromLatin1(generationPath));
    return url;
}

int LocalImageService::requestCount() const
{
    return m_server->counters().requests();
}

int LocalImageService::answeredCount() const
{
    return m_server->counters().answered();
}

int LocalImageService::underWayCount() const
{
    return m_server->counters().underWay();
}

int LocalImageService::mostAtOnce() const
{
    return m_server->counters().mostAtOnce();
}

} // namespace quilmora
