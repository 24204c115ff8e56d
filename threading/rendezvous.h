// Threads that wait for one another: each arrives, and all go on once the last has arrived.
// Not std::latch: libstdc++ 12 builds it on atomic waits, which on MinGW can miss a wake-up
// (seen under Wine: threads left waiting after all of them had arrived).
#pragma once

#include <condition_variable>
#include <mutex>

namespace threading {

class Rendezvous {
public:
    explicit Rendezvous(unsigned count) : mLeft(count) {}
    Rendezvous(const Rendezvous&) = delete;
    Rendezvous& operator=(const Rendezvous&) = delete;

    void ArriveAndWait() {
        std::unique_lock lock(mMutex);
        if (--mLeft == 0) {
            mAllArrived.notify_all();
        }
        mAllArrived.wait(lock, [this] { return mLeft == 0; });
    }

private:
    std::mutex mMutex;
    std::condition_variable mAllArrived;
    unsigned mLeft;
};

} // namespace threading
