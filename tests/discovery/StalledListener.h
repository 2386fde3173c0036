#pragma once

#include <QtGlobal>

#ifdef Q_OS_LINUX

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace tarnwick::testing {

// A listening TCP port on 127.0.0.1 whose accept queue is full and never drained, so the
// system drops every new connection request: a connection to it never completes its handshake.
class StalledListener {
public:
    StalledListener() {
        m_listener = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        if (m_listener < 0 || ::bind(m_listener, reinterpret_cast<sockaddr*>(&address), length) ||
            ::listen(m_listener, 0) ||
            ::getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &length))
            return;
        m_port = ntohs(address.sin_port);

        // Connect until one request goes unanswered: from then on the queue is full.
        for (int attempt = 0; attempt < 16; ++attempt) {
            const int filler = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0);
            if (filler < 0)
                break;
            m_fillers.push_back(filler);
            if (::connect(filler, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0)
                continue;
            pollfd writable{filler, POLLOUT, 0};
            if (::poll(&writable, 1, 300) == 0) {
                m_stalled = true;
                break;
            }
        }
    }

    ~StalledListener() {
        for (const int filler : m_fillers)
            ::close(filler);
        if (m_listener >= 0)
            ::close(m_listener);
    }

    StalledListener(const StalledListener&) = delete;
    StalledListener& operator=(const StalledListener&) = delete;

    // False when the system would not let the queue fill up.
    bool isStalled() const { return m_stalled; }
    quint16 port() const { return m_port; }

private:
    int m_listener = -1;
    quint16 m_port = 0;
    bool m_stalled = false;
    std::vector<int> m_fillers;
};

} // namespace tarnwick::testing

#endif
