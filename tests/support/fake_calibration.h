// An in-process IOsCalibration that records every call, served to CoCreateInstance through a
// class object registered for CLSCTX_LOCAL_SERVER, so tests see exactly what the library sends.
#pragma once

#include <windows.h>

#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <ostrel_server.h>
#include <server_slots.h>

namespace fake {

// One call as the object saw it: the vtable slot, numeric arguments in order, string arguments.
struct CalCall {
    int slot;
    std::vector<double> numbers;
    std::vector<std::wstring> names;
};

// What a slot answers: its HRESULT and, for slots with a success flag, the flag.
struct SlotResult {
    HRESULT hr = S_OK;
    BOOL ok = TRUE;
};

// The calls and answers shared by every fake object a server has made.
struct CalibrationLog {
    std::vector<CalCall> calls;
    // Slots not named here succeed.
    std::map<int, SlotResult> results;
    // What CalIntegrationTimeAt and CalTempToCounts write through their out arguments.
    std::function<float(float tempK)> integrationTime;
    unsigned short counts = 0;
    // Runs inside CalComputeLUT with the two buffer names, before the answer is returned.
    std::function<void(const std::wstring& counts, const std::wstring& temps)> computeLut;

    std::vector<CalCall> CallsTo(int slot) const {
        std::vector<CalCall> found;
        for (const CalCall& call : calls) {
            if (call.slot == slot) {
                found.push_back(call);
            }
        }
        return found;
    }
    // The slots of the calls from the first-th on, in order.
    std::vector<int> SlotsFrom(size_t first) const {
        std::vector<int> slots;
        for (size_t i = first; i < calls.size(); ++i) {
            slots.push_back(calls[i].slot);
        }
        return slots;
    }
};

class FakeCalibration : public IOsCalibration {
public:
    explicit FakeCalibration(std::shared_ptr<CalibrationLog> log) : mLog(std::move(log)) {}
    virtual ~FakeCalibration() = default;

    ULONG References() const { return mRefs; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        *out = iid == IID_IUnknown || iid == IID_IOsCalibration ? this : nullptr;
        if (*out == nullptr) {
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++mRefs; }
    // The server owns the object, so reaching 0 does not delete it.
    ULONG STDMETHODCALLTYPE Release() override { return --mRefs; }

    HRESULT STDMETHODCALLTYPE Reserved003() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved004() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved005() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved006() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved007() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CalSetAux(float calAux, BOOL* ok) override {
        return Answer(kSlotSetAux, ok, calAux);
    }
    HRESULT STDMETHODCALLTYPE CalComputeLUT(ULONG entryCount, ULONG step, ULONG largestCount,
                                            BSTR countsBufferName, BSTR tempBufferName,
                                            BOOL* ok) override {
        const std::wstring counts = countsBufferName ? countsBufferName : L"";
        const std::wstring temps = tempBufferName ? tempBufferName : L"";
        if (mLog->computeLut) {
            mLog->computeLut(counts, temps);
        }
        return Answer({kSlotComputeLut,
                       {double(entryCount), double(step), double(largestCount)},
                       {counts, temps}},
                      ok);
    }
    HRESULT STDMETHODCALLTYPE CalSetObjectParams(float factorA, float tempACelsius, float factorB,
                                                 float tempBCelsius, LONG mode, BOOL* ok) override {
        return Answer(kSlotSetObjectParams, ok, factorA, tempACelsius, factorB, tempBCelsius, mode);
    }
    HRESULT STDMETHODCALLTYPE Reserved011() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved012() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CalTempToCounts(float tempCelsius, unsigned short* counts,
                                              BOOL* ok) override {
        *counts = mLog->counts;
        return Answer(kSlotTempToCounts, ok, tempCelsius);
    }
    HRESULT STDMETHODCALLTYPE CalIsReady() override { return Answer(kSlotIsReady, nullptr); }
    HRESULT STDMETHODCALLTYPE CalLoadFactoryKind2(ULONG calKind, float c0, float c1, float c2,
                                                  float c3, float c4, float c5, ULONG countsHigh,
                                                  ULONG countsLow, float tempMaxK, float tempMinK,
                                                  BOOL* ok) override {
        return Answer(kSlotLoadFactoryKind2, ok, calKind, c0, c1, c2, c3, c4, c5, countsHigh,
                      countsLow, tempMaxK, tempMinK);
    }
    HRESULT STDMETHODCALLTYPE CalSetIntegrationTime(LONG integrationTime, BOOL* ok) override {
        return Answer(kSlotSetIntegrationTime, ok, integrationTime);
    }
    HRESULT STDMETHODCALLTYPE CalLoadFactory(ULONG calKind, float c0, float c1, float c2, float c3,
                                             float c4, float c5, ULONG countsHigh, ULONG countsLow,
                                             float tempMaxK, float tempMinK, float coefExtra,
                                             BOOL* ok) override {
        return Answer(kSlotLoadFactory, ok, calKind, c0, c1, c2, c3, c4, c5, countsHigh, countsLow,
                      tempMaxK, tempMinK, coefExtra);
    }
    HRESULT STDMETHODCALLTYPE CalIntegrationTimeAt(float tempK, float count, float* result,
                                                   LONG mode, BOOL* ok) override {
        *result = mLog->integrationTime ? mLog->integrationTime(tempK) : 0.0f;
        return Answer(kSlotIntegrationTimeAt, ok, tempK, count, mode);
    }

private:
    template <class... Numbers> HRESULT Answer(int slot, BOOL* ok, Numbers... numbers) {
        return Answer({slot, {double(numbers)...}, {}}, ok);
    }
    HRESULT Answer(CalCall call, BOOL* ok) {
        const auto it = mLog->results.find(call.slot);
        const SlotResult result = it == mLog->results.end() ? SlotResult{} : it->second;
        mLog->calls.push_back(std::move(call));
        if (ok != nullptr) {
            *ok = result.ok;
        }
        return result.hr;
    }

    std::shared_ptr<CalibrationLog> mLog;
    ULONG mRefs = 0;
};

// Registers a class object for CLSID_OsCalibration in this process for as long as it lives.
// COM must be initialised on the thread. The server owns the objects it makes and keeps them for
// tests to look at until it goes; their reference counts are the callers' alone. The server is its
// own class object and outlives its registration, so that needs no reference count.
class FakeCalibrationServer : public IClassFactory {
public:
    FakeCalibrationServer() {
        if (FAILED(CoRegisterClassObject(CLSID_OsCalibration, this, CLSCTX_LOCAL_SERVER,
                                         REGCLS_MULTIPLEUSE, &mCookie))) {
            throw std::runtime_error("CoRegisterClassObject failed");
        }
    }
    virtual ~FakeCalibrationServer() { CoRevokeClassObject(mCookie); }
    FakeCalibrationServer(const FakeCalibrationServer&) = delete;
    FakeCalibrationServer& operator=(const FakeCalibrationServer&) = delete;

    CalibrationLog& Log() { return *mLog; }
    const std::vector<std::unique_ptr<FakeCalibration>>& Objects() const { return mObjects; }
    // Makes CreateInstance fail from now on, as an unreachable server would.
    void RefuseCreation(bool refuse) { mRefuse = refuse; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        *out = iid == IID_IUnknown || iid == IID_IClassFactory ? this : nullptr;
        return *out ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** out) override {
        *out = nullptr;
        if (outer != nullptr || mRefuse) {
            return CO_E_SERVER_EXEC_FAILURE;
        }
        mObjects.push_back(std::make_unique<FakeCalibration>(mLog));
        return mObjects.back()->QueryInterface(iid, out);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

private:
    std::shared_ptr<CalibrationLog> mLog = std::make_shared<CalibrationLog>();
    std::vector<std::unique_ptr<FakeCalibration>> mObjects;
    bool mRefuse = false;
    DWORD mCookie = 0;
};

} // namespace fake
