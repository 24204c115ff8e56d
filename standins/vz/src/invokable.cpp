#include <vz/invokable.h>

namespace vz {

IInvokable::~IInvokable() = default;

invokable0::invokable0(Function function) : m_function(function) {
    if (function == nullptr) {
        throw CException(L"An invokable needs a function.");
    }
}

void invokable0::Invoke() {
    m_function();
}

bool invokable0::SameHandler(IInvokable* other) {
    const auto* same = dynamic_cast<const invokable0*>(other);
    return same != nullptr && same->m_function == m_function;
}

} // namespace vz
