#include <vz/event.h>
#include <vz/invoker.h>

#include <gtest/gtest.h>

namespace {

using Value = unsigned long long;

struct Listener {
    void OnEvent(void*, Value) {}
    void OnOtherEvent(void*, Value) {}
};

using Member = vz::TMemberHandler2<Listener, void*, Value>;

class Event : public testing::Test {
protected:
    Listener mFirst;
    Listener mSecond;
    Member mFirstHandler{&mFirst, &Listener::OnEvent};
    Member mSecondHandler{&mSecond, &Listener::OnEvent};
    Member mFirstOtherHandler{&mFirst, &Listener::OnOtherEvent};
    vz::CMessageQueueInvoker mInvoker;
    vz::event1<Value> mEvent;
};

TEST_F(Event, AttachKeepsRecordsAndDetachRemovesTheFirstWithTheSameHandler) {
    ASSERT_TRUE(mEvent.Attach(&mFirstOtherHandler));
    ASSERT_TRUE(mEvent.Attach(&mFirstHandler));
    ASSERT_TRUE(mEvent.Attach(&mSecondHandler, &mInvoker, true));
    ASSERT_TRUE(mEvent.Attach(&mFirstHandler, &mInvoker));
    ASSERT_EQ(mEvent.GetCount(), 4u);
    EXPECT_EQ(mEvent[1].handler, &mFirstHandler);
    EXPECT_EQ(mEvent[1].invoker, nullptr);
    EXPECT_FALSE(mEvent[1].asynchronous);
    EXPECT_EQ(mEvent[2].invoker, &mInvoker);
    EXPECT_TRUE(mEvent[2].asynchronous);

    // A distinct handler object calling the same target counts as the same handler.
    const Member equalToFirst(&mFirst, &Listener::OnEvent);
    ASSERT_TRUE(mEvent.Detach(&equalToFirst));

    ASSERT_EQ(mEvent.GetCount(), 3u);
    EXPECT_EQ(mEvent[0].handler, &mFirstOtherHandler);
    EXPECT_EQ(mEvent[1].handler, &mSecondHandler);
    EXPECT_EQ(mEvent[2].handler, &mFirstHandler);
    EXPECT_EQ(mEvent[2].invoker, &mInvoker);
}

} // namespace
