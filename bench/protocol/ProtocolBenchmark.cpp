#include "protocol/MakeraFrameParser.h"
#include "protocol/MakeraPacket.h"

#include <QCryptographicHash>
#include <QRandomGenerator>

#include <benchmark/benchmark.h>

// Throughput of the frame paths against MD5, which every upload also computes over the file:
//   cmake -S . -B build-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DTARNWICK_BUILD_BENCHMARKS=ON
//   cmake --build build-bench --target bench_protocol
//   build-bench/bin/bench_protocol --benchmark_repetitions=5
//   --benchmark_report_aggregates_only=true

using namespace tarnwick;

namespace {

constexpr qsizetype readSize = 65536;
constexpr int framesPerStream = 64;

QByteArray randomBytes(qsizetype size) {
    QRandomGenerator random(42);
    QByteArray bytes(size, Qt::Uninitialized);
    for (char& byte : bytes)
        byte = char(random.bounded(256));
    return bytes;
}

MakeraPacket fullSizePacket(int index) {
    QByteArray payload = randomBytes(MakeraPacket::maximumPayloadSize);
    payload[0] = char(index);
    return {MakeraPacketType::FileData, payload};
}

// Full-size frames back to back, as a controller streams them.
const QByteArray& frameStream() {
    static const QByteArray stream = [] {
        QByteArray bytes;
        for (int i = 0; i < framesPerStream; ++i)
            bytes += fullSizePacket(i).encoded().value();
        return bytes;
    }();
    return stream;
}

void checksum(benchmark::State& state) {
    const QByteArray& bytes = frameStream();
    for (auto _ : state)
        benchmark::DoNotOptimize(CRC16CCITT::checksum(bytes));
    state.SetBytesProcessed(state.iterations() * bytes.size());
}

void md5(benchmark::State& state) {
    const QByteArray& bytes = frameStream();
    for (auto _ : state)
        benchmark::DoNotOptimize(QCryptographicHash::hash(bytes, QCryptographicHash::Md5));
    state.SetBytesProcessed(state.iterations() * bytes.size());
}

void encodeFullSizeFrame(benchmark::State& state) {
    const MakeraPacket packet = fullSizePacket(0);
    for (auto _ : state)
        benchmark::DoNotOptimize(packet.encoded());
    state.SetBytesProcessed(state.iterations() * (packet.payload.size() + 9));
}

void decodeFullSizeFrame(benchmark::State& state) {
    const QByteArray frame = fullSizePacket(0).encoded().value();
    for (auto _ : state)
        benchmark::DoNotOptimize(MakeraPacketDecoder::decode(frame));
    state.SetBytesProcessed(state.iterations() * frame.size());
}

// The connection's path: reads of up to 64 KiB appended to the parser, drained after each.
void parseFrameStream(benchmark::State& state) {
    const QByteArray& bytes = frameStream();
    MakeraFrameParser parser;
    qint64 packets = 0;
    for (auto _ : state) {
        for (qsizetype at = 0; at < bytes.size(); at += readSize) {
            parser.append(QByteArrayView(bytes).sliced(at, std::min(readSize, bytes.size() - at)));
            while (std::optional<MakeraPacket> packet = parser.next()) {
                benchmark::DoNotOptimize(packet->payload.constData());
                ++packets;
            }
        }
    }
    if (packets != state.iterations() * framesPerStream)
        state.SkipWithError("the parser lost frames");
    state.SetBytesProcessed(state.iterations() * bytes.size());
}

} // namespace

BENCHMARK(checksum);
BENCHMARK(md5);
BENCHMARK(encodeFullSizeFrame);
BENCHMARK(decodeFullSizeFrame);
BENCHMARK(parseFrameStream);

BENCHMARK_MAIN();
