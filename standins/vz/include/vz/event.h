#pragma once

#include <vz/array.h>
#include <vz/handler.h>

namespace vz {

class IInvoker;

// An event with one argument besides the sender. The host attaches handlers; whoever raises
// the event walks the records and calls each handler directly or through its invoker.
template <class T> class event1 {
public:
    struct HANDLER {
        IHandler2<void*, T>* handler;
        // Null: the handler runs on the raising thread.
        IInvoker* invoker;
        // Through an invoker: post instead of waiting for the handler.
        bool asynchronous;
    };

    event1() : mHandlers(5) {}

    // Keeps the caller's pointer: the handler must stay alive while attached.
    bool Attach(IHandler2<void*, T>* handler, IInvoker* invoker = nullptr,
                bool asynchronous = false) {
        if (handler == nullptr) {
            return false;
        }
        return mHandlers.Add(HANDLER{handler, invoker, asynchronous});
    }

    // Removes the first record whose handler IsSame as handler.
    bool Detach(const IHandler2<void*, T>* handler) {
        for (unsigned i = 0; i < mHandlers.GetCount(); ++i) {
            if (mHandlers[i].handler->IsSame(handler)) {
                return mHandlers.RemoveAt(i);
            }
        }
        return false;
    }

    unsigned GetCount() const { return mHandlers.GetCount(); }
    HANDLER& operator[](unsigned index) { return mHandlers[index]; }

private:
    TArray<HANDLER> mHandlers;
};

} // namespace vz
