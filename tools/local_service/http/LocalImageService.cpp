#include "local_service/http/LocalImageService.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

#include <atomic>
#include <chrono>
#include <httplib.h>
#include <sys/socket.h>
#include <thread>

using namespace Qt::StringLiterals;

namespace quilmora::localservice {
namespace {

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

QByteArray toJson(const GenerationHandler::Counts &counts)
{
    const QJsonObject object{{u"requests"_s, counts.requests},
                             {u"answered"_s, counts.answered},
                             {u"under_way"_s, counts.underWay},
                             {u"most_at_once"_s, counts.mostAtOnce}};
    return QJsonDocument{object}.toJson(QJsonDocument::Compact);
}

void sendPicture(const GenerationHandler &handler, const httplib::Request &request,
                 httplib::Response &response)
{
    const QByteArray picture = handler.picture(QFileInfo{QString::fromStdString(request.path)}.baseName());
    if (picture.isEmpty()) {
        response.status = 404;
        return;
    }
    response.set_content(picture.constData(), static_cast<std::size_t>(picture.size()), "image/jpeg");
}

/// Called for every status of 400 and above: those of the handler have a body already.
void explainError(GenerationHandler &handler, const httplib::Request &request, httplib::Response &response)
{
    if (!response.body.empty()) {
        return;
    }
    const bool isGeneration = request.path == generationPath;
    if (response.status != 404) {
        send(response, handler.refuse(ErrorEnvelope::ofStatus(response.status)));
    } else if (isGeneration || (request.path == statsPath && request.method != "GET")) {
        response.set_header("Allow", isGeneration ? "POST" : "GET");
        const QString code = u"MethodNotAllowed"_s;
        const QString message = u"The method %1 is not allowed for this path."_s;
        send(response,
             handler.refuse({405, code, message.arg(QString::fromStdString(request.method)), {}, code}));
    } else {
        const QString code = u"NotFound"_s;
        const QString message = u"There is nothing at the path %1."_s;
        send(response,
             handler.refuse({404, code, message.arg(QString::fromStdString(request.path)), {}, code}));
    }
}

} // namespace

struct LocalImageService::Listener {
    httplib::Server http;
    std::thread thread;
    std::atomic<bool> ended = false;
};

LocalImageService::LocalImageService(const LocalServiceOptions &options)
    : m_wantedPort{options.port},
      m_handler{options},
      m_listener{std::make_unique<Listener>()}
{
    httplib::Server &http = m_listener->http;
    // The library's own choice lets a second service share a taken port, and half the requests go there.
    http.set_socket_options([](auto socket) {
        const int yes = 1;
        setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    });
    http.set_payload_max_length(largestBody);
    // One request a connection: an idle kept-alive connection would hold a thread.
    http.set_keep_alive_max_count(1);
    http.set_tcp_nodelay(true);
    http.set_read_timeout(seconds);
    http.set_write_timeout(seconds);
    http.new_task_queue = [] {
        return new httplib::ThreadPool{threads};
    };
    addRoutes();
}

LocalImageService::~LocalImageService() { stop(); }

void LocalImageService::addRoutes()
{
    httplib::Server &http = m_listener->http;
    http.Post(generationPath, [this](const httplib::Request &request, httplib::Response &response) {
        const std::string key = request.get_header_value("Authorization");
        const std::string type = request.get_header_value("Content-Type");
        send(response, m_handler.handle({QByteArray::fromStdString(key), QByteArray::fromStdString(type),
                                         QByteArray::fromStdString(request.body)}));
    });
    http.Get(statsPath, [this](const httplib::Request &, httplib::Response &response) {
        send(response, {200, toJson(counts())});
    });
    http.Get(picturesPattern, [this](const httplib::Request &request, httplib::Response &response) {
        sendPicture(m_handler, request, response);
    });
    http.set_error_handler([this](const httplib::Request &request, httplib::Response &response) {
        explainError(m_handler, request, response);
    });
}

quint16 LocalImageService::start()
{
    httplib::Server &http = m_listener->http;
    int bound = -1;
    if (m_wantedPort == 0) {
        bound = http.bind_to_any_port(host);
    } else if (http.bind_to_port(host, m_wantedPort)) {
        bound = m_wantedPort;
    }
    if (bound <= 0) {
        return 0;
    }
    m_port = static_cast<quint16>(bound);
    m_handler.setPictureAddress(u"http://%1:%2/pictures/"_s.arg(QLatin1StringView{host}).arg(m_port));
    m_listener->thread = std::thread{[this] {
        m_listener->http.listen_after_bind();
        m_listener->ended = true;
    }};
    // A stop() before the listener runs would be lost, and the listener would never end.
    while (!http.is_running() && !m_listener->ended) {
        std::this_thread::sleep_for(std::chrono::milliseconds{1});
    }
    return m_port;
}

void LocalImageService::stop()
{
    m_handler.shutDown();
    if (m_listener->thread.joinable()) {
        m_listener->http.stop();
        m_listener->thread.join();
    }
}

QUrl LocalImageService::endpoint() const
{
    return QUrl{
        u"http://%1:%2%3"_s.arg(QLatin1StringView{host}).arg(m_port).arg(QLatin1StringView{generationPath})};
}

} // namespace quilmora::localservice
