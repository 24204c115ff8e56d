#pragma once

#include <vz/exception.h>

namespace vz {

// A polymorphic call target taking two arguments. Clones are owned by whoever asked for them
// and are disposed of with Destroy.
template <class A, class B> class IHandler2 {
public:
    virtual ~IHandler2() = default;
    virtual void Invoke(A first, B second) = 0;
    // True when other calls the same target.
    virtual bool IsSame(const IHandler2* other) const = 0;
    virtual IHandler2* Clone() const = 0;
    virtual void Destroy() = 0;
};

// Calls a member function on an object that the handler does not own.
template <class C, class A, class B> class TMemberHandler2 final : public IHandler2<A, B> {
public:
    using Method = void (C::*)(A, B);

    TMemberHandler2(C* object, Method method) : mObject(object), mMethod(method) {
        if (object == nullptr || method == nullptr) {
            throw CException(L"A member handler needs an object and a member function.");
        }
    }

    void Invoke(A first, B second) override { (mObject->*mMethod)(first, second); }

    bool IsSame(const IHandler2<A, B>* other) const override {
        const auto* same = dynamic_cast<const TMemberHandler2*>(other);
        return same != nullptr && same->mObject == mObject && same->mMethod == mMethod;
    }

    IHandler2<A, B>* Clone() const override { return new TMemberHandler2(*this); }
    void Destroy() override { delete this; }

private:
    C* mObject;
    Method mMethod;
};

} // namespace vz
