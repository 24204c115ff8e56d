// An in-process IOsCalibration that records every call, served to CoCreateInstance through a
// class object registered for CLSCTX_LOCAL_SERVER, so tests see exactly what the library sends.
#pragma once

#include <windows.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <ostrel_server.h>

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
    std::map<int, SlotResult> results;
    // When set, decides every call's answer instead of results.
    std::function<SlotResult(const CalCall&)> decide;
    // What CalIntegrationTimeAt and CalTempToCounts write through their out arguments.
    std::function<float(float tempK, float count)> integrationTime;
    unsigned short counts = 0;
    // Runs inside CalComputeLUT with the two buffer names, before the answer is returned.
    std::function<void(const std::wstring& counts, const std::wstring& temps)> computeLut;

    SlotResult ResultOf(const CalCall& call) const;
    std::vector<CalCall> CallsTo(int slot) const;
};

class FakeCalibration : public IOsCalibration {
public:
    explicit FakeCalibration(std::shared_ptr<CalibrationLog> log);
    virtual ~FakeCalibration() = default;

    ULONG References() const { return mRefs; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;

    HRESULT STDMETHODCALLTYPE SimSetFault(ULONG slot, LONG mode) override;
    HRESULT STDMETHODCALLTYPE SimProcessId(ULONG* pid) override;
    HRESULT STDMETHODCALLTYPE Reserved005() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved006() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved007() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CalSetAux(float calAux, BOOL* ok) override;
    HRESULT STDMETHODCALLTYPE CalComputeLUT(ULONG entryCount, ULONG step, ULONG largestCount,
                                            BSTR countsBufferName, BSTR tempBufferName,
                                            BOOL* ok) override;
    HRESULT STDMETHODCALLTYPE CalSetObjectParams(float factorA, float tempACelsius, float factorB,
                                                 float tempBCelsius, LONG mode, BOOL* ok) override;
    HRESULT STDMETHODCALLTYPE Reserved011() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reserved012() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CalTempToCounts(float tempCelsius, unsigned short* counts,
                                              BOOL* ok) override;
    HRESULT STDMETHODCALLTYPE CalIsReady() override;
    HRESULT STDMETHODCALLTYPE CalLoadFactoryKind2(ULONG calKind, float c0, float c1, float c2,
                                                  float c3, float c4, float c5, ULONG countsHigh,
                                                  ULONG countsLow, float tempMaxK, float tempMinK,
                                                  BOOL* ok) override;
    HRESULT STDMETHODCALLTYPE CalSetIntegrationTime(LONG integrationTime, BOOL* ok) override;
    HRESULT STDMETHODCALLTYPE CalLoadFactory(ULONG calKind, float c0, float c1, float c2,
                                             float c3, float c4, float c5, ULONG countsHigh,
                                             ULONG countsLow, float tempMaxK, float tempMinK,
                                             float coefExtra, BOOL* ok) override;
    HRESULT STDMETHODCALLTYPE CalIntegrationTimeAt(float tempK, float count, float* result,
                                                   LONG mode, BOOL* ok) override;

private:
    HRESULT Answer(CalCall call, BOOL* ok);

    std::shared_ptr<CalibrationLog> mLog;
    ULONG mRefs = 0;
};

// Registers a class object for CLSID_OsCalibration in this process for as long as it lives.
// COM must be initialised on the thread. The server owns the objects it makes and keeps them for
// inspection until it goes; their reference counts are the callers' alone.
class FakeCalibrationServer {
public:
    FakeCalibrationServer();
    ~FakeCalibrationServer();
    FakeCalibrationServer(const FakeCalibrationServer&) = delete;
    FakeCalibrationServer& operator=(const FakeCalibrationServer&) = delete;

    CalibrationLog& Log() { return *mLog; }
    const std::vector<FakeCalibration*>& Objects() const { return mObjects; }
    // Makes CreateInstance fail from now on, as an unreachable server would.
    void RefuseCreation(bool refuse) { mRefuse = refuse; }

private:
    class Factory;

    std::shared_ptr<CalibrationLog> mLog = std::make_shared<CalibrationLog>();
    std::vector<FakeCalibration*> mObjects;
    bool mRefuse = false;
    Factory* mFactory;
    DWORD mCookie = 0;
};

} // namespace fake
