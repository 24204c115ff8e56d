// ostrel-convert: the example host. It connects to the camera server and reports its version,
// shows a server notification arriving at a handler, loads a factory calibration and object
// parameters into a calibration engine, has the server build the preset's temperature table,
// and prints a few count-to-temperature pairs and how the table's entries are marked.
#include <ostrel.h>

#include <vz/handler.h>
#include <vz/invoker.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <string>

#include "record_files.h"

namespace {

int Fail(const std::string& message) {
    std::fprintf(stderr, "ostrel-convert: %s\n", message.c_str());
    return 1;
}

// The sample records: beside the program in the build tree, under share/ in the SDK.
std::filesystem::path SamplesFolder() {
    wchar_t exe[MAX_PATH];
    GetModuleFileNameW(nullptr, exe, MAX_PATH);
    const std::filesystem::path bin = std::filesystem::path(exe).parent_path();
    const std::filesystem::path beside = bin / "samples";
    return std::filesystem::exists(beside) ? beside : bin.parent_path() / "share/ostrel/samples";
}

struct EventListener {
    void OnServerEvent(void*, unsigned __int64 value) {
        received = true;
        this->value = value;
    }
    bool received = false;
    unsigned __int64 value = 0;
};

void PumpMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        DispatchMessageW(&message);
    }
}

// The simulator posts a notification on request. This thread is the host's message-queue
// thread: the event window is created and the notification delivered while it pumps.
void ShowServerEvent(COstrel& host) {
    vz::messageQueueInvoker.AttachToCurrentThread();
    EventListener listener;
    vz::TMemberHandler2<EventListener, void*, unsigned __int64> handler(
        &listener, &EventListener::OnServerEvent);
    gOstrelEvents->mEvent.Attach(&handler);
    bool requested = false;
    for (int tick = 0; tick < 500 && !listener.received; ++tick) {
        PumpMessages();
        if (!requested && gOstrelEvents->mHwnd != nullptr) {
            requested = true;
            if (FAILED(host->SimPostEvent(0x0517E1))) {
                std::puts("The server sends no notification on request (not the simulator).");
                break;
            }
        }
        Sleep(10);
    }
    if (listener.received) {
        std::printf("Server notification 0x%llx arrived at the handler.\n", listener.value);
    } else if (requested) {
        std::puts("No server notification arrived within 5 seconds.");
    }
    gOstrelEvents->mEvent.Detach(&handler);
    vz::messageQueueInvoker.Detach();
}

} // namespace

int main() {
    COstrel host = GetOstrel();
    unsigned long major = 0, minor = 0, build = 0;
    if (!host || !GetOstrelVersion(major, minor, build)) {
        return Fail("can't connect to the camera server (is it registered, 5.90.4 or newer?)");
    }
    std::printf("Connected to camera server %lu.%lu.%lu.\n", major, minor, build);
    ShowServerEvent(host);

    const std::filesystem::path samples = SamplesFolder();
    vz::reduce::CQuilloFactoryCalReduceObject record;
    vz::reduce::CObjectParametersReduceObject params;
    std::string error;
    if (!records::ReadFactoryCal(samples / "factory_cal.txt", record, error) ||
        !records::ReadObjectParams(samples / "object_params.txt", params, error)) {
        return Fail(error);
    }

    vz::CBroadCal engine;
    if (!engine.isAvailable()) {
        return Fail("the camera server's calibration service is not available");
    }
    const unsigned char preset = 0;
    if (!engine.SetBroadCal(preset, &record) || !engine.SetObjectParams(&params)) {
        return Fail("the camera server refused the calibration");
    }
    const float* temps = engine.GetLUTOutput(preset);
    const unsigned char* status = engine.GetLUTStatus(preset);
    if (temps == nullptr || status == nullptr) {
        return Fail("the camera server could not build the temperature table");
    }

    std::printf("Preset %u, calibrated from %u to %u counts:\n", preset, record.countsLow,
                record.countsHigh);
    std::puts("   counts   temperature (C)  status");
    for (unsigned counts : {0u, record.countsLow, 16384u, 32768u, 49152u, record.countsHigh, 65535u}) {
        std::printf("  %7u  %16.3f  %6u\n", counts, temps[counts], status[counts]);
    }

    std::array<unsigned, 5> histogram{};
    for (unsigned i = 0; i < vz::kLutSize; ++i) {
        ++histogram[status[i]];
    }
    std::puts("Table entries by status:");
    std::printf("  inside the calibrated range  %6u\n", histogram[vz::eLUTValid]);
    std::printf("  outside, within the margin   %6u\n", histogram[vz::eLUTOutside]);
    std::printf("  below the low margin         %6u\n", histogram[vz::eLUTBelow]);
    std::printf("  above the high margin        %6u\n", histogram[vz::eLUTAbove]);
    return 0;
}
