#include <vz/thread.h>

namespace vz {

void CThread::Yield() {
    SwitchToThread();
}

} // namespace vz
