#include "foundation/Random.h"

#include <chrono>
#include <ctime>
#include <mutex>
#include <random>

int NextRandom() {
    static std::mutex s_mutex;
    const std::lock_guard lock(s_mutex);
    static std::mt19937 s_generator(TickCount());
    return static_cast<int>(s_generator() >> 17U);
}

quint32 TickCount() {
    using namespace std::chrono;
    return static_cast<quint32>(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}
