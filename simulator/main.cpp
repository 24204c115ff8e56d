// camsim.exe: the camera-server simulator. "/RegServer" ("/Force" to replace another server's
// keys) and "/UnregServer" manage its registration; COM starts it with "-Embedding" to serve;
// "/Serve" serves until ended; "/Scene" writes a synthetic frame of counts and its temperatures.
#include <windows.h>

#include <shellapi.h>

#include <unique_resource.h>

#include <cstdio>
#include <string>
#include <string_view>

#include "display_name.h"
#include "local_server.h"
#include "registration.h"
#include "scene_command.h"

namespace {

// Built as a windowed program so that COM starting it never opens a console. Messages go to
// the standard error the caller gave us, else to the console of the shell that ran us.
void PrintLine(std::string_view text) {
    HANDLE output = GetStdHandle(STD_ERROR_HANDLE);
    owners::UniqueHandle console;
    if (output == nullptr || output == INVALID_HANDLE_VALUE) {
        if (!AttachConsole(ATTACH_PARENT_PROCESS)) {
            return;
        }
        output = CreateFileW(L"CONOUT$", GENERIC_WRITE, FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0,
                             nullptr);
        if (output == INVALID_HANDLE_VALUE) {
            return;
        }
        console.reset(output);
    }
    const std::string line = std::string(text) + "\r\n";
    DWORD written = 0;
    WriteFile(output, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
}

int ReportRegistration(const char* command, const camsim::RegistrationResult& outcome) {
    if (SUCCEEDED(outcome.result)) {
        return 0;
    }
    if (outcome.refusing) {
        PrintLine(std::string("camsim: ") + command + ": " +
                  formats::Narrow(outcome.refusing->key) + " belongs to " +
                  formats::Narrow(outcome.refusing->file) + "; camsim " + command +
                  " /Force replaces it");
        return 1;
    }
    char line[256];
    std::snprintf(line, sizeof(line), "camsim: %s failed while %s (HRESULT 0x%08lX)", command,
                  outcome.step, static_cast<unsigned long>(outcome.result));
    PrintLine(line);
    return 1;
}

bool IsSwitch(const wchar_t* argument, std::wstring_view name) {
    if (argument[0] != L'/' && argument[0] != L'-') {
        return false;
    }
    const std::wstring_view rest(argument + 1);
    return rest.size() == name.size() &&
           CompareStringOrdinal(rest.data(), static_cast<int>(rest.size()), name.data(),
                                static_cast<int>(name.size()), TRUE) == CSTR_EQUAL;
}

} // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
    int count = 0;
    const owners::UniqueLocal<LPWSTR*> arguments(CommandLineToArgvW(GetCommandLineW(), &count));
    if (arguments && count >= 2 && IsSwitch(arguments.get()[1], L"Scene")) {
        const camsim::CommandOutcome outcome =
            camsim::RunSceneCommand({arguments.get() + 2, static_cast<std::size_t>(count - 2)});
        PrintLine(outcome.message);
        return outcome.exitCode;
    }
    if (arguments && count == 3 && IsSwitch(arguments.get()[1], L"RegServer") &&
        IsSwitch(arguments.get()[2], L"Force")) {
        return ReportRegistration("/RegServer",
                                  camsim::RegisterServer(camsim::ForeignKeys::kReplace));
    }
    if (arguments && count == 2) {
        const wchar_t* argument = arguments.get()[1];
        if (IsSwitch(argument, L"RegServer")) {
            return ReportRegistration("/RegServer",
                                      camsim::RegisterServer(camsim::ForeignKeys::kRefuse));
        }
        if (IsSwitch(argument, L"UnregServer")) {
            return ReportRegistration("/UnregServer", camsim::UnregisterServer());
        }
        if (IsSwitch(argument, L"Embedding")) {
            return camsim::RunLocalServer(camsim::Lifetime::UntilLastRelease);
        }
        if (IsSwitch(argument, L"Serve")) {
            return camsim::RunLocalServer(camsim::Lifetime::UntilEnded);
        }
    }
    PrintLine("usage: camsim /RegServer [/Force] | /UnregServer | /Serve | /Scene <frame.pgm> "
              "<truth.pfm> [--width W] [--height H] (COM starts it with -Embedding)");
    return 2;
}
