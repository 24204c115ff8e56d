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
    Listener m_first;
    Listener m_second;
    Member m_firstHandler{&m_first, &Listener::OnEvent};
    Member m_secondHandler{&m_second, &Listener::OnEvent};
    Member m_firstOtherHandler{&m_first, &Listener::OnOtherEvent};
    vz::CMessageQueueInvoker m_invoker;
    vz::event1<Value> m_event;
};

TEST_F(Event, AttachKeepsRecordsAndDetachRemovesTheFirstWithTheSameHandler) {
    ASSERT_TRUE(m_event.Attach(&m_firstOtherHandler));
    ASSERT_TRUE(m_event.Attach(&m_firstHandler));
    ASSERT_TRUE(m_event.Attach(&m_secondHandler, &m_invoker, true));
    ASSERT_TRUE(m_event.Attach(&m_firstHandler, &m_invoker));
    ASSERT_EQ(m_event.GetCount(), 4u);
    EXPECT_EQ(m_event[1].handler, &m_firstHandler);
    EXPECT_EQ(m_event[1].invoker, nullptr);
    EXPECT_FALSE(m_event[1].asynchronous);
    EXPECT_EQ(m_event[2].invoker, &m_invoker);
    EXPECT_TRUE(m_event[2].asynchronous);

    // A distinct handler object calling the same target counts as the same handler.
    const Member equalToFirst(&m_first, &Listener::OnEvent);
    ASSERT_TRUE(m_event.Detach(&equalToFirst));

    ASSERT_EQ(m_event.GetCount(), 3u);
    EXPECT_EQ(m_event[0].handler, &m_firstOtherHandler);
    EXPECT_EQ(m_event[1].handler, &m_secondHandler);
    EXPECT_EQ(m_event[2].handler, &m_firstHandler);
    EXPECT_EQ(m_event[2].invoker, &m_invoker);
}

} // namespace
