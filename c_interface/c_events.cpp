#include <vz/handler.h>
#include <vz/invoker.h>

#include <memory>
#include <mutex>
#include <set>

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

namespace {

// The tokens handed out and not yet ended, so that a stale or made-up one is refused rather than
// freed. Made on first use: loading the library constructs nothing.
struct LiveTokens {
    std::mutex lock;
    std::set<const ostrel_subscription*> tokens;
};
LiveTokens& Live() {
    static LiveTokens live;
    return live;
}

} // namespace

extern "C" ostrel_status ostrel_attach_message_thread(void) {
    return c_interface::Guarded(__func__, []() -> ostrel_status {
        return vz::messageQueueInvoker.AttachToCurrentThread() ? OSTREL_OK : OSTREL_WRONG_THREAD;
    });
}

extern "C" ostrel_status ostrel_detach_message_thread(void) {
    return c_interface::Guarded(__func__, []() -> ostrel_status {
        return vz::messageQueueInvoker.Detach() ? OSTREL_OK : OSTREL_WRONG_THREAD;
    });
}

extern "C" ostrel_status ostrel_subscribe(ostrel_event_callback callback, void* context,
                                          ostrel_subscription** token) {
    if (callback == nullptr || token == nullptr) {
        return c_interface::Failed(__func__, OSTREL_BAD_ARGUMENT);
    }
    return c_interface::Guarded(__func__, [&]() -> ostrel_status {
        auto subscription =
            std::make_unique<ostrel_subscription>(ostrel_subscription{{callback, context}});
        LiveTokens& live = Live();
        const std::lock_guard lock(live.lock);
        live.tokens.insert(subscription.get());
        if (!gOstrelEvents->mEvent.Attach(&subscription->handler)) {
            live.tokens.erase(subscription.get());
            return OSTREL_OUT_OF_MEMORY;
        }
        *token = subscription.release();
        return OSTREL_OK;
    });
}

extern "C" ostrel_status ostrel_unsubscribe(ostrel_subscription* token) {
    if (token == nullptr) {
        return OSTREL_OK;
    }
    return c_interface::Guarded(__func__, [&]() -> ostrel_status {
        LiveTokens& live = Live();
        const std::lock_guard lock(live.lock);
        if (live.tokens.erase(token) == 0) {
            return OSTREL_BAD_ARGUMENT;
        }
        gOstrelEvents->mEvent.Detach(&token->handler);
        delete token;
        return OSTREL_OK;
    });
}
