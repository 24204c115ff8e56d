#include <ostrel.h>

#include <vz/invoker.h>

#include <memory>

template class vz::TSingletonPtr<COstrelEvents, 100000, 0, vz::TSingletonPtrPostCreateDoNothing>;

COstrelEventsHolder gOstrelEvents;

UINT COstrelEvents::mMsgOstrel = 0;

namespace {

constexpr wchar_t kWindowClass[] = L"wcOstrelEvents";
using Invokable = vz::invokable2<void*, unsigned __int64>;

// Runs on the message-queue thread, which then owns the window.
void CreateEventWindow() {
    COstrelEvents* events = gOstrelEvents.GetInstance();
    events->mHwnd = CreateWindowExW(0, kWindowClass, L"Calorvue<->Ostrel Message Window", 0, 0, 0,
                                    0, 0, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
}

void FireOstrelEvent(unsigned __int64 value) {
    vz::event1<unsigned __int64>& event = gOstrelEvents->mEvent;
    // A handler may attach or detach others: the count is read anew for every record.
    for (unsigned i = 0; i < event.GetCount(); ++i) {
        const vz::event1<unsigned __int64>::HANDLER record = event[i];
        if (record.invoker == nullptr) {
            record.handler->Invoke(nullptr, value);
        } else if (record.asynchronous) {
            auto call = std::make_unique<Invokable>(*record.handler, nullptr, value);
            record.invoker->Post(call.get(), true);
            call.release();
        } else {
            Invokable call(*record.handler, nullptr, value);
            record.invoker->Invoke(&call);
        }
    }
}

} // namespace

COstrelEvents::COstrelEvents() : mHwnd(nullptr) {
    // A second registration in the process fails harmlessly; the class is never unregistered.
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = WndProc;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = kWindowClass;
    RegisterClassW(&windowClass);
    mMsgOstrel = RegisterWindowMessageW(L"Tamso");
    auto create = std::make_unique<vz::invokable0>(CreateEventWindow);
    vz::messageQueueInvoker.Post(create.get(), true);
    create.release();
}

COstrelEvents::~COstrelEvents() {
    DestroyWindow(mHwnd);
}

COstrelEvents::COstrelEvents(const COstrelEvents& other) = default;

COstrelEvents& COstrelEvents::operator=(const COstrelEvents& other) = default;

LRESULT CALLBACK COstrelEvents::WndProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == mMsgOstrel) {
        FireOstrelEvent(wParam);
    }
    return DefWindowProcW(hwnd, message, wParam, lParam);
}
