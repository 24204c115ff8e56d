#include "fake_calibration.h"

#include <stdexcept>

namespace fake {

SlotResult CalibrationLog::ResultOf(const CalCall& call) const {
    if (decide) {
        return decide(call);
    }
    const auto it = results.find(call.slot);
    return it == results.end() ? SlotResult{} : it->second;
}

std::vector<CalCall> CalibrationLog::CallsTo(int slot) const {
    std::vector<CalCall> found;
    for (const CalCall& call : calls) {
        if (call.slot == slot) {
            found.push_back(call);
        }
    }
    return found;
}

FakeCalibration::FakeCalibration(std::shared_ptr<CalibrationLog> log) : mLog(std::move(log)) {}

HRESULT FakeCalibration::QueryInterface(REFIID iid, void** out) {
    if (iid == IID_IUnknown || iid == IID_IOsCalibration) {
        *out = static_cast<IOsCalibration*>(this);
        AddRef();
        return S_OK;
    }
    *out = nullptr;
    return E_NOINTERFACE;
}

ULONG FakeCalibration::AddRef() { return ++mRefs; }

// The server owns the object, so reaching 0 does not delete it.
ULONG FakeCalibration::Release() { return --mRefs; }

HRESULT FakeCalibration::Answer(CalCall call, BOOL* ok) {
    const SlotResult result = mLog->ResultOf(call);
    mLog->calls.push_back(std::move(call));
    if (ok != nullptr) {
        *ok = result.ok;
    }
    return result.hr;
}

HRESULT FakeCalibration::SimSetFault(ULONG slot, LONG mode) {
    return Answer({3, {double(slot), double(mode)}, {}}, nullptr);
}

HRESULT FakeCalibration::SimProcessId(ULONG* pid) {
    *pid = GetCurrentProcessId();
    return Answer({4, {}, {}}, nullptr);
}

HRESULT FakeCalibration::CalSetAux(float calAux, BOOL* ok) { return Answer({8, {calAux}, {}}, ok); }

HRESULT FakeCalibration::CalComputeLUT(ULONG entryCount, ULONG step, ULONG largestCount,
                                       BSTR countsBufferName, BSTR tempBufferName, BOOL* ok) {
    const std::wstring counts = countsBufferName ? countsBufferName : L"";
    const std::wstring temps = tempBufferName ? tempBufferName : L"";
    CalCall call{9, {double(entryCount), double(step), double(largestCount)}, {counts, temps}};
    if (mLog->computeLut && SUCCEEDED(mLog->ResultOf(call).hr)) {
        mLog->computeLut(counts, temps);
    }
    return Answer(std::move(call), ok);
}

HRESULT FakeCalibration::CalSetObjectParams(float factorA, float tempACelsius, float factorB,
                                            float tempBCelsius, LONG mode, BOOL* ok) {
    return Answer({10, {factorA, tempACelsius, factorB, tempBCelsius, double(mode)}, {}}, ok);
}

HRESULT FakeCalibration::CalTempToCounts(float tempCelsius, unsigned short* counts, BOOL* ok) {
    *counts = mLog->counts;
    return Answer({13, {tempCelsius}, {}}, ok);
}

HRESULT FakeCalibration::CalIsReady() { return Answer({14, {}, {}}, nullptr); }

HRESULT FakeCalibration::CalLoadFactoryKind2(ULONG calKind, float c0, float c1, float c2,
                                             float c3, float c4, float c5, ULONG countsHigh,
                                             ULONG countsLow, float tempMaxK, float tempMinK,
                                             BOOL* ok) {
    return Answer({15,
                   {double(calKind), c0, c1, c2, c3, c4, c5, double(countsHigh), double(countsLow),
                    tempMaxK, tempMinK},
                   {}},
                  ok);
}

HRESULT FakeCalibration::CalSetIntegrationTime(LONG integrationTime, BOOL* ok) {
    return Answer({16, {double(integrationTime)}, {}}, ok);
}

HRESULT FakeCalibration::CalLoadFactory(ULONG calKind, float c0, float c1, float c2, float c3,
                                        float c4, float c5, ULONG countsHigh, ULONG countsLow,
                                        float tempMaxK, float tempMinK, float coefExtra, BOOL* ok) {
    return Answer({17,
                   {double(calKind), c0, c1, c2, c3, c4, c5, double(countsHigh), double(countsLow),
                    tempMaxK, tempMinK, coefExtra},
                   {}},
                  ok);
}

HRESULT FakeCalibration::CalIntegrationTimeAt(float tempK, float count, float* result, LONG mode,
                                              BOOL* ok) {
    *result = mLog->integrationTime ? mLog->integrationTime(tempK, count) : 0.0f;
    return Answer({18, {tempK, count, double(mode)}, {}}, ok);
}

class FakeCalibrationServer::Factory : public IClassFactory {
public:
    explicit Factory(FakeCalibrationServer& server) : mServer(server) {}
    virtual ~Factory() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        if (iid == IID_IUnknown || iid == IID_IClassFactory) {
            *out = static_cast<IClassFactory*>(this);
            AddRef();
            return S_OK;
        }
        *out = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++mRefs; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --mRefs;
        if (left == 0) {
            delete this;
        }
        return left;
    }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** out) override {
        *out = nullptr;
        if (outer != nullptr) {
            return CLASS_E_NOAGGREGATION;
        }
        if (mServer.mRefuse) {
            return CO_E_SERVER_EXEC_FAILURE;
        }
        auto* object = new FakeCalibration(mServer.mLog);
        mServer.mObjects.push_back(object);
        return object->QueryInterface(iid, out);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

private:
    FakeCalibrationServer& mServer;
    ULONG mRefs = 1;
};

FakeCalibrationServer::FakeCalibrationServer() : mFactory(new Factory(*this)) {
    const HRESULT hr = CoRegisterClassObject(CLSID_OsCalibration, mFactory, CLSCTX_LOCAL_SERVER,
                                             REGCLS_MULTIPLEUSE, &mCookie);
    if (FAILED(hr)) {
        mFactory->Release();
        throw std::runtime_error("CoRegisterClassObject failed");
    }
}

FakeCalibrationServer::~FakeCalibrationServer() {
    CoRevokeClassObject(mCookie);
    mFactory->Release();
    for (FakeCalibration* object : mObjects) {
        delete object;
    }
}

} // namespace fake
