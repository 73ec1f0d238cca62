#include "companions/compiler/Workers.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace {
/// More only wait for the disk and for the allocator.
constexpr unsigned c_nMaxThreads = 4;
constexpr int c_nFewPieces = 4;
} // namespace

void ForEachPiece(int nCount, const std::function<void(int nPiece)>& work) {
    std::atomic<int> nNext = 0;
    std::mutex mutex;
    std::exception_ptr failure;
    const auto run = [&] {
        try {
            for (int n = nNext++; n < nCount; n = nNext++)
                work(n);
        } catch (...) {
            nNext = nCount;
            const std::scoped_lock lock(mutex);
            if (!failure)
                failure = std::current_exception();
        }
    };
    const unsigned nThreads =
        nCount < c_nFewPieces ? 1 : std::clamp(std::thread::hardware_concurrency(), 1U, c_nMaxThreads);
    {
        std::vector<std::jthread> others;
        for (unsigned n = 1; n < nThreads; ++n)
            others.emplace_back(run);
        run();
    }
    if (failure)
        std::rethrow_exception(failure);
}
