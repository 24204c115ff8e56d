#include <vz/handler.h>
#include <vz/invokable.h>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

using Value = unsigned long long;
using Handler = vz::IHandler2<void*, Value>;

struct Call {
    int target;
    void* sender;
    Value value;
    bool operator==(const Call&) const = default;
};

std::vector<Call> gCalls;

void CallFirst(void* sender, Value value) {
    gCalls.push_back({0, sender, value});
}
void CallSecond(void* sender, Value value) {
    gCalls.push_back({1, sender, value});
}

struct Target {
    int id;
    void Record(void* sender, Value value) { gCalls.push_back({id, sender, value}); }
    void RecordNegated(void* sender, Value value) { gCalls.push_back({-id, sender, value}); }
};

Target gTargets[] = {{10}, {11}};

// Each kind makes handlers for two distinct targets, numbered 0 and 1, and knows the id that
// its calls to a target record.
struct FreeFunctions {
    static std::unique_ptr<Handler> Make(int target) {
        return std::make_unique<vz::TFunctionHandler2<void*, Value>>(target == 0 ? CallFirst
                                                                                 : CallSecond);
    }
    static int RecordedId(int target) { return target; }
};

struct MembersOfTwoObjects {
    static std::unique_ptr<Handler> Make(int target) {
        return std::make_unique<vz::TMemberHandler2<Target, void*, Value>>(&gTargets[target],
                                                                           &Target::Record);
    }
    static int RecordedId(int target) { return gTargets[target].id; }
};

struct TwoMembersOfOneObject {
    static std::unique_ptr<Handler> Make(int target) {
        return std::make_unique<vz::TMemberHandler2<Target, void*, Value>>(
            &gTargets[0], target == 0 ? &Target::Record : &Target::RecordNegated);
    }
    static int RecordedId(int target) { return target == 0 ? 10 : -10; }
};

// Counts the clones that are alive, to see who destroys them.
class CountingHandler : public Handler {
public:
    static inline int clonesAlive = 0;

    void Invoke(void*, Value) override {}
    bool IsSame(const Handler* other) const override { return other == this; }
    Handler* Clone() const override {
        ++clonesAlive;
        return new CountingHandler;
    }
    void Destroy() override {
        --clonesAlive;
        delete this;
    }
};

struct DestroysClone {
    void operator()(Handler* clone) const { clone->Destroy(); }
};

template <class Kind> class Handlers : public testing::Test {
protected:
    void SetUp() override { gCalls.clear(); }
};

using HandlerKinds = testing::Types<FreeFunctions, MembersOfTwoObjects, TwoMembersOfOneObject>;
TYPED_TEST_SUITE(Handlers, HandlerKinds);

TYPED_TEST(Handlers, AreSameOnlyForTheSameTarget) {
    const auto first = TypeParam::Make(0);
    const auto firstAgain = TypeParam::Make(0);
    const auto second = TypeParam::Make(1);
    const CountingHandler otherKind{};

    EXPECT_TRUE(first->IsSame(firstAgain.get()));
    EXPECT_FALSE(first->IsSame(second.get()));
    EXPECT_FALSE(first->IsSame(&otherKind));
    EXPECT_FALSE(first->IsSame(nullptr));
}

TYPED_TEST(Handlers, CloneCallsTheSameTarget) {
    const auto original = TypeParam::Make(1);
    const std::unique_ptr<Handler, DestroysClone> clone(original->Clone());

    ASSERT_NE(clone.get(), original.get());
    EXPECT_TRUE(clone->IsSame(original.get()));
    EXPECT_TRUE(original->IsSame(clone.get()));
    int sender = 0;
    clone->Invoke(&sender, 7);
    EXPECT_EQ(gCalls, std::vector<Call>{(Call{TypeParam::RecordedId(1), &sender, 7})});
}

TYPED_TEST(Handlers, Invokable2CallsItsCloneWithTheStoredArguments) {
    int sender = 0;
    const auto handler = TypeParam::Make(0);
    vz::invokable2<void*, Value> call(*handler, &sender, 0xFFFFFFFF00000001ull);

    call.Invoke();
    call.Invoke();

    const Call expected{TypeParam::RecordedId(0), &sender, 0xFFFFFFFF00000001ull};
    EXPECT_EQ(gCalls, (std::vector<Call>{expected, expected}));
}

TYPED_TEST(Handlers, Invokable2SameHandlerComparesTheClones) {
    const auto first = TypeParam::Make(0);
    const auto second = TypeParam::Make(1);
    vz::invokable2<void*, Value> call(*first, nullptr, 1);
    vz::invokable2<void*, Value> sameHandlerOtherValue(*TypeParam::Make(0), &gCalls, 2);
    vz::invokable2<void*, Value> otherHandler(*second, nullptr, 1);
    vz::invokable2<void*, int> otherArguments(vz::TFunctionHandler2<void*, int>([](void*, int) {}),
                                              nullptr, 1);
    vz::invokable0 withoutArguments([] {});

    EXPECT_TRUE(call.SameHandler(&sameHandlerOtherValue));
    EXPECT_FALSE(call.SameHandler(&otherHandler));
    EXPECT_FALSE(call.SameHandler(&otherArguments));
    EXPECT_FALSE(call.SameHandler(&withoutArguments));
    EXPECT_FALSE(call.SameHandler(nullptr));
}

TEST(Invokable2, OwnsAndDestroysItsOwnClone) {
    CountingHandler original;
    auto call = std::make_unique<vz::invokable2<void*, Value>>(original, nullptr, 3);
    EXPECT_EQ(CountingHandler::clonesAlive, 1);

    call.reset();

    EXPECT_EQ(CountingHandler::clonesAlive, 0);
}

int gPlainCalls = 0;
void PlainFirst() {
    ++gPlainCalls;
}
void PlainSecond() {}

TEST(Invokable0, CallsItsFunctionAndIsSameForTheSameFunction) {
    gPlainCalls = 0;
    vz::invokable0 first(PlainFirst);
    vz::invokable0 firstAgain(PlainFirst);
    vz::invokable0 second(PlainSecond);
    CountingHandler handler;
    vz::invokable2<void*, Value> withArguments(handler, nullptr, 0);

    first.Invoke();

    EXPECT_EQ(gPlainCalls, 1);
    EXPECT_TRUE(first.SameHandler(&firstAgain));
    EXPECT_FALSE(first.SameHandler(&second));
    EXPECT_FALSE(first.SameHandler(&withArguments));
}

TEST(Invocation, NullTargetsAreRefused) {
    using Function = vz::TFunctionHandler2<void*, Value>;
    using Member = vz::TMemberHandler2<Target, void*, Value>;
    EXPECT_THROW(vz::invokable0(nullptr), vz::CException);
    EXPECT_THROW(Function(nullptr), vz::CException);
    EXPECT_THROW(Member(nullptr, &Target::Record), vz::CException);
    EXPECT_THROW(Member(&gTargets[0], nullptr), vz::CException);
}

} // namespace
