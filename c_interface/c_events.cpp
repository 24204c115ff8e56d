#include <vz/handler.h>
#include <vz/invoker.h>

#include "boundary.h"

namespace c_interface {

// A C callback with its context, attached to the event window's event.
class CallbackHandler final : public vz::IHandler2<void*, unsigned __int64> {
public:
    CallbackHandler(ostrel_event_callback callback, void* context)
        : mCallback(callback), mContext(context) {}

    void Invoke(void*, unsigned __int64 value) override { mCallback(mContext, value); }
    bool IsSame(const IHandler2* other) const override { return other == this; }
    IHandler2* Clone() const override { return new CallbackHandler(mCallback, mContext); }
    void Destroy() override { delete this; }

private:
    ostrel_event_callback mCallback;
    void* mContext;
};

} // namespace c_interface

struct ostrel_subscription {
    c_interface::CallbackHandler handler;
};

extern "C" ostrel_status ostrel_attach_message_thread(void) {
    return c_interface::Guarded([]() -> ostrel_status {
        return vz::messageQueueInvoker.AttachToCurrentThread() ? OSTREL_OK : OSTREL_WRONG_THREAD;
    });
}

extern "C" ostrel_status ostrel_detach_message_thread(void) {
    return c_interface::Guarded([]() -> ostrel_status {
        return vz::messageQueueInvoker.Detach() ? OSTREL_OK : OSTREL_WRONG_THREAD;
    });
}

extern "C" ostrel_status ostrel_subscribe(ostrel_event_callback callback, void* context,
                                          ostrel_subscription** token) {
    if (callback == nullptr || token == nullptr) {
        return OSTREL_BAD_ARGUMENT;
    }
    return c_interface::Guarded([&]() -> ostrel_status {
        auto* subscription = new ostrel_subscription{{callback, context}};
        if (!gOstrelEvents->mEvent.Attach(&subscription->handler)) {
            delete subscription;
            return OSTREL_OUT_OF_MEMORY;
        }
        *token = subscription;
        return OSTREL_OK;
    });
}

extern "C" ostrel_status ostrel_unsubscribe(ostrel_subscription* token) {
    return c_interface::Guarded([&]() -> ostrel_status {
        if (token != nullptr) {
            gOstrelEvents->mEvent.Detach(&token->handler);
            delete token;
        }
        return OSTREL_OK;
    });
}
