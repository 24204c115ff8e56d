#pragma once

#include <vz/api.h>
#include <vz/handler.h>

namespace vz {

// A call packaged for an invoker to run later or on another thread.
class VZ_API IInvokable {
public:
    virtual ~IInvokable();
    virtual void Invoke() = 0;
    // True when other would call the same handler.
    virtual bool SameHandler(IInvokable* other) = 0;
};

// Calls a function without arguments.
class VZ_API invokable0 : public IInvokable {
public:
    using Function = void (*)();

    explicit invokable0(Function function);

    void Invoke() override;
    bool SameHandler(IInvokable* other) override;

private:
    Function mFunction;
};

// Calls its own clone of a handler with two stored arguments.
template <class A, class B> class invokable2 : public IInvokable {
public:
    invokable2(const IHandler2<A, B>& handler, A first, B second)
        : mHandler(handler.Clone()), mFirst(first), mSecond(second) {}

    invokable2(const invokable2&) = delete;
    invokable2& operator=(const invokable2&) = delete;

    ~invokable2() override { mHandler->Destroy(); }

    void Invoke() override { mHandler->Invoke(mFirst, mSecond); }

    bool SameHandler(IInvokable* other) override {
        const auto* same = dynamic_cast<const invokable2*>(other);
        return same != nullptr && mHandler->IsSame(same->mHandler);
    }

private:
    IHandler2<A, B>* mHandler;
    A mFirst;
    B mSecond;
};

} // namespace vz
