// The simplest blocking request-reply upload over one TCP connection, as a yardstick for
// tarnwick-cli and tarnwick-sim. The server asks for every chunk in turn and does the work the
// simulator does with each (copy, running MD5, the file written at the end); the client answers
// from one buffer holding the whole file, framing each reply by hand, with one MD5 of the file.
//
//   minimal-upload-pair server OUTPUT-FILE [LATENCY-MS]   prints the port, serves one upload
//   minimal-upload-pair client PORT FILE

#include "protocol/CRC16CCITT.h"

#include <QCryptographicHash>
#include <QFile>

#include <arpa/inet.h>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

constexpr size_t chunkSize = 8192;
constexpr unsigned char fileStart = 0xB0, fileMD5 = 0xB1, fileView = 0xB2, fileData = 0xB3,
                        fileEnd = 0xB4;

[[noreturn]] void die(const char* what) {
    std::perror(what);
    std::exit(1);
}

void writeAll(int fd, const unsigned char* bytes, size_t size) {
    while (size > 0) {
        const ssize_t written = ::write(fd, bytes, size);
        if (written <= 0)
            die("write");
        bytes += written;
        size -= size_t(written);
    }
}

void readAll(int fd, unsigned char* bytes, size_t size) {
    while (size > 0) {
        const ssize_t got = ::read(fd, bytes, size);
        if (got <= 0)
            die("read");
        bytes += got;
        size -= size_t(got);
    }
}

// Frames `payload` into `frame` (which has room for it) and returns the frame's size.
size_t frame(unsigned char* out, unsigned char type, const unsigned char* payload, size_t size) {
    const size_t length = size + 3;
    out[0] = 0x86;
    out[1] = 0x68;
    out[2] = (unsigned char)(length >> 8);
    out[3] = (unsigned char)length;
    out[4] = type;
    if (payload != out + 5 && size > 0)
        std::memcpy(out + 5, payload, size);
    const quint16 sum = tarnwick::CRC16CCITT::checksum(
        QByteArrayView(reinterpret_cast<const char*>(out + 2), qsizetype(length)));
    out[length + 2] = (unsigned char)(sum >> 8);
    out[length + 3] = (unsigned char)sum;
    out[length + 4] = 0x55;
    out[length + 5] = 0xAA;
    return length + 6;
}

// Reads one frame; returns its type, and its payload in `payload`.
unsigned char readFrame(int fd, std::vector<unsigned char>& payload) {
    unsigned char head[5];
    readAll(fd, head, 5);
    const size_t length = size_t(head[2]) << 8 | head[3];
    payload.resize(length - 3);
    readAll(fd, payload.data(), payload.size());
    unsigned char tail[4];
    readAll(fd, tail, 4);
    // The checksum covers the length, the type and the payload.
    QByteArray covered(reinterpret_cast<const char*>(head + 2), 3);
    covered.append(reinterpret_cast<const char*>(payload.data()), qsizetype(payload.size()));
    if (tarnwick::CRC16CCITT::checksum(covered) != (quint16(tail[0]) << 8 | tail[1])) {
        std::fputs("checksum mismatch\n", stderr);
        std::exit(1);
    }
    return head[4];
}

void put32(unsigned char* out, quint32 value) {
    out[0] = (unsigned char)(value >> 24);
    out[1] = (unsigned char)(value >> 16);
    out[2] = (unsigned char)(value >> 8);
    out[3] = (unsigned char)value;
}

int server(const char* outputPath, int latencyMs) {
    const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(listener, 1) != 0)
        die("listen");
    socklen_t addressSize = sizeof address;
    ::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &addressSize);
    std::printf("%u\n", ntohs(address.sin_port));
    std::fflush(stdout);
    const int fd = ::accept(listener, nullptr, nullptr);
    if (fd < 0)
        die("accept");
    const int one = 1;
    ::setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);

    std::vector<unsigned char> payload;
    unsigned char request[16];
    readFrame(fd, payload); // file start
    readFrame(fd, payload); // opening MD5
    const std::string md5(payload.begin(), payload.end());
    writeAll(fd, request, frame(request, fileView, nullptr, 0));
    readFrame(fd, payload);
    const quint32 count = quint32(payload[0]) << 24 | quint32(payload[1]) << 16 |
                          quint32(payload[2]) << 8 | payload[3];

    std::vector<char> content(size_t(count) * chunkSize);
    size_t size = 0;
    QCryptographicHash hash(QCryptographicHash::Md5);
    for (quint32 n = 1; n <= count; ++n) {
        if (latencyMs > 0) {
            // The simulator's precise wait: sleep, then spin the last moments.
            const auto deadline =
                std::chrono::steady_clock::now() + std::chrono::milliseconds(latencyMs);
            std::this_thread::sleep_until(deadline - std::chrono::microseconds(200));
            while (std::chrono::steady_clock::now() < deadline) {
            }
        }
        unsigned char number[4];
        put32(number, n);
        writeAll(fd, request, frame(request, fileData, number, 4));
        readFrame(fd, payload);
        std::memcpy(content.data() + size, payload.data() + 4, payload.size() - 4);
        hash.addData(QByteArrayView(content.data() + size, qsizetype(payload.size() - 4)));
        size += payload.size() - 4;
    }
    if (hash.result().toHex().toStdString() != md5) {
        std::fputs("MD5 mismatch\n", stderr);
        return 1;
    }
    QFile output(QString::fromLocal8Bit(outputPath));
    if (!output.open(QIODevice::WriteOnly) ||
        output.write(content.data(), qint64(size)) != qint64(size))
        die("output");
    output.close();
    writeAll(fd, request, frame(request, fileEnd, nullptr, 0));
    ::close(fd);
    return 0;
}

int client(int port, const char* path) {
    QFile file(QString::fromLocal8Bit(path));
    if (!file.open(QIODevice::ReadOnly))
        die("open");
    const QByteArray content = file.readAll();
    const QByteArray md5 = QCryptographicHash::hash(content, QCryptographicHash::Md5).toHex();
    const size_t size = size_t(content.size());
    const quint32 count = quint32((size + chunkSize - 1) / chunkSize);

    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(quint16(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
        die("connect");
    const int one = 1;
    ::setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);

    std::vector<unsigned char> out(chunkSize + 16);
    const char command[] = "upload /sd/gcodes/bench.nc\n";
    writeAll(fd, out.data(),
             frame(out.data(), fileStart, reinterpret_cast<const unsigned char*>(command),
                   sizeof command - 1));
    writeAll(fd, out.data(),
             frame(out.data(), fileMD5, reinterpret_cast<const unsigned char*>(md5.data()), 32));

    std::vector<unsigned char> request;
    for (;;) {
        switch (readFrame(fd, request)) {
        case fileMD5:
            writeAll(
                fd, out.data(),
                frame(out.data(), fileMD5, reinterpret_cast<const unsigned char*>(md5.data()), 32));
            break;
        case fileView: {
            unsigned char view[6];
            put32(view, count);
            view[4] = chunkSize >> 8;
            view[5] = chunkSize & 0xFF;
            writeAll(fd, out.data(), frame(out.data(), fileView, view, 6));
            break;
        }
        case fileData: {
            const quint32 n = quint32(request[0]) << 24 | quint32(request[1]) << 16 |
                              quint32(request[2]) << 8 | request[3];
            const size_t start = size_t(n - 1) * chunkSize;
            const size_t length = std::min(chunkSize, size - start);
            std::memcpy(out.data() + 5, request.data(), 4);
            std::memcpy(out.data() + 9, content.constData() + start, length);
            writeAll(fd, out.data(), frame(out.data(), fileData, out.data() + 5, length + 4));
            break;
        }
        case fileEnd:
            ::close(fd);
            return 0;
        default:
            std::fputs("unexpected packet\n", stderr);
            return 1;
        }
    }
}

} // namespace

int main(int argc, char* argv[]) {
    if (argc >= 3 && std::strcmp(argv[1], "server") == 0)
        return server(argv[2], argc >= 4 ? std::atoi(argv[3]) : 0);
    if (argc == 4 && std::strcmp(argv[1], "client") == 0)
        return client(std::atoi(argv[2]), argv[3]);
    std::fputs("usage: minimal-upload-pair server OUTPUT [LATENCY-MS] | client PORT FILE\n",
               stderr);
    return 2;
}
