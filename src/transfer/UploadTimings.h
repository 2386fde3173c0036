#pragma once

#include <chrono>

namespace tarnwick {

// How long an upload waits at each step. The defaults are the product's; tests shorten them.
struct UploadTimings {
    std::chrono::milliseconds connect{5000};
    std::chrono::milliseconds probeOverall{2000};
    std::chrono::milliseconds probePacket{400};
    // Between the file-start packet and the opening MD5 packet.
    std::chrono::milliseconds openingPause{200};
    std::chrono::milliseconds packetWait{9000};
    // Least interval between two progress values, except the one that reports the whole file.
    std::chrono::milliseconds progressInterval{50};
};

} // namespace tarnwick
