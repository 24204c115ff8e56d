#pragma once

#include <vz/api.h>
#include <vz/exception.h>
#include <vz/thread.h>

#include <windows.h>

#include <atomic>

namespace vz {

struct TSingletonPtrPostCreateDoNothing {};

namespace Private {

// Has vz.dll call deleter(object) when it is unloaded or the process exits: lower order first,
// and among equal orders the latest registration first. The module holding deleter is pinned
// so that its code is still there then. Throws CException for a null deleter.
VZ_API void DeleteAtExit(void* object, unsigned order, void (*deleter)(void*));

} // namespace Private

// A holder of one lazily created T per process, deleted at exit in the given Order. Holders are
// empty: every copy reaches the same instance. Flags and PostCreate change nothing.
template <class T, unsigned Order, int Flags, class PostCreate> class TSingletonPtr {
public:
    TSingletonPtr() {}
    TSingletonPtr(const TSingletonPtr&) {}
    TSingletonPtr& operator=(const TSingletonPtr&) { return *this; }
    ~TSingletonPtr() {}

    static T* GetInstance();
    static void Delete(T* instance);

    T* operator->() const { return GetInstance(); }
    T& operator*() const { return *GetInstance(); }
    operator T*() const { return GetInstance(); }

    static T* m_pInst;
    static LONG m_InstFirst;
    static LONG m_InstDone;

private:
    static void DeleteErased(void* instance);
};

template <class T, unsigned Order, int Flags, class PostCreate>
T* TSingletonPtr<T, Order, Flags, PostCreate>::m_pInst = nullptr;

template <class T, unsigned Order, int Flags, class PostCreate>
LONG TSingletonPtr<T, Order, Flags, PostCreate>::m_InstFirst = 0;

template <class T, unsigned Order, int Flags, class PostCreate>
LONG TSingletonPtr<T, Order, Flags, PostCreate>::m_InstDone = 0;

// If T's constructor throws, the instance is never made and later callers wait for ever.
template <class T, unsigned Order, int Flags, class PostCreate>
T* TSingletonPtr<T, Order, Flags, PostCreate>::GetInstance() {
    if (T* instance = std::atomic_ref<T*>(m_pInst).load(std::memory_order_acquire)) {
        return instance;
    }
    if (std::atomic_ref<LONG>(m_InstFirst).exchange(1) == 0) {
        T* instance = new T;
        std::atomic_ref<T*>(m_pInst).store(instance, std::memory_order_release);
        // Waiting threads are released even if the registration throws.
        struct ReleaseWaiters {
            ~ReleaseWaiters() { std::atomic_ref<LONG>(m_InstDone).store(1); }
        } releaseWaiters;
        Private::DeleteAtExit(instance, Order, &DeleteErased);
    } else {
        while (std::atomic_ref<LONG>(m_InstDone).load() != 1) {
            CThread::Yield();
        }
    }
    return std::atomic_ref<T*>(m_pInst).load(std::memory_order_acquire);
}

template <class T, unsigned Order, int Flags, class PostCreate>
void TSingletonPtr<T, Order, Flags, PostCreate>::Delete(T* instance) {
    delete instance;
}

template <class T, unsigned Order, int Flags, class PostCreate>
void TSingletonPtr<T, Order, Flags, PostCreate>::DeleteErased(void* instance) {
    Delete(static_cast<T*>(instance));
}

} // namespace vz
