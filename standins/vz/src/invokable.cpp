#include <vz/invokable.h>

namespace vz {

IInvokable::~IInvokable() = default;

invokable0::invokable0(Function function) : mFunction(function) {
    if (function == nullptr) {
        throw CException(L"An invokable needs a function.");
    }
}

void invokable0::Invoke() {
    mFunction();
}

bool invokable0::SameHandler(IInvokable* other) {
    const auto* same = dynamic_cast<const invokable0*>(other);
    return same != nullptr && same->mFunction == mFunction;
}

} // namespace vz
