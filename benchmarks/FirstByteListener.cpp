#include "FirstByteListener.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace quilmora::bench {

FirstByteListener::FirstByteListener() : m_socket{::socket(AF_INET, SOCK_STREAM, 0)}
{
    sockaddr_in here{};
    here.sin_family = AF_INET;
    here.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof here;
    auto *address = static_cast<sockaddr *>(static_cast<void *>(&here));
    if (m_socket < 0 || bind(m_socket, address, length) != 0 || ::listen(m_socket, 1) != 0 ||
        getsockname(m_socket, address, &length) != 0) {
        qFatal("Cannot listen on loopback");
    }
    m_port = ntohs(here.sin_port);
    m_thread = std::thread{&FirstByteListener::listen, this};
}

FirstByteListener::~FirstByteListener()
{
    // Wakes the thread if nobody came.
    shutdown(m_socket, SHUT_RDWR);
    m_thread.join();
    close(m_socket);
}

QString FirstByteListener::address() const { return u"http://127.0.0.1:%1/"_s.arg(m_port); }

std::optional<FirstByteListener::Clock::time_point> FirstByteListener::firstByte() const
{
    const Clock::rep ticks = m_moment;
    return ticks == 0 ? std::nullopt : std::optional{Clock::time_point{Clock::duration{ticks}}};
}

void FirstByteListener::listen()
{
    const int connection = accept(m_socket, nullptr, nullptr);
    if (connection < 0) {
        return;
    }
    char byte = 0;
    if (recv(connection, &byte, 1, 0) == 1) {
        m_moment = Clock::now().time_since_epoch().count();
    }
    close(connection);
}

} // namespace quilmora::bench
