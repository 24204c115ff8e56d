#pragma once

#include <vz/api.h>
#include <vz/exception.h>
#include <vz/thread.h>

#include <windows.h>

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

    // Defined out of the class, so that a library exporting an instantiation exports these too.
    T* operator->() const;
    T& operator*() const;
    operator T*() const;

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
// The Interlocked functions are full barriers, so the flags publish the instance safely.
template <class T, unsigned Order, int Flags, class PostCreate>
T* TSingletonPtr<T, Order, Flags, PostCreate>::GetInstance() {
    void* volatile* instance = reinterpret_cast<void* volatile*>(&m_pInst);
    if (void* made = InterlockedCompareExchangePointer(instance, nullptr, nullptr)) {
        return static_cast<T*>(made);
    }
    if (InterlockedExchange(&m_InstFirst, 1) == 0) {
        T* made = new T;
        InterlockedExchangePointer(instance, made);
        // Waiting threads are released even if the registration throws.
        struct ReleaseWaiters {
            ~ReleaseWaiters() { InterlockedExchange(&m_InstDone, 1); }
        } releaseWaiters;
        Private::DeleteAtExit(made, Order, &DeleteErased);
        return made;
    }
    while (InterlockedCompareExchange(&m_InstDone, 0, 0) != 1) {
        CThread::Yield();
    }
    return m_pInst;
}

template <class T, unsigned Order, int Flags, class PostCreate>
T* TSingletonPtr<T, Order, Flags, PostCreate>::operator->() const {
    return GetInstance();
}

template <class T, unsigned Order, int Flags, class PostCreate>
T& TSingletonPtr<T, Order, Flags, PostCreate>::operator*() const {
    return *GetInstance();
}

template <class T, unsigned Order, int Flags, class PostCreate>
TSingletonPtr<T, Order, Flags, PostCreate>::operator T*() const {
    return GetInstance();
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
