// A process of its own for the stand-in test that watches what happens as vz.dll unloads:
//   standins_probe [name:order | singleton]...
// registers deletions that print their names when vz.dll runs them; "singleton" creates a
// TSingletonPtr instance of order 3 that prints "singleton".
#include <vz/singleton.h>

#include <windows.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace {

void Print(const std::string& text) {
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), text.data(), static_cast<DWORD>(text.size()),
              &written, nullptr);
}

struct Marker {
    std::string name;
};

void DeleteMarker(void* object) {
    auto* marker = static_cast<Marker*>(object);
    Print(marker->name + " ");
    delete marker;
}

struct LoudSingleton {
    ~LoudSingleton() { Print("singleton "); }
};

void RegisterDeletion(const char* argument) {
    if (std::strcmp(argument, "singleton") == 0) {
        vz::TSingletonPtr<LoudSingleton, 3, 0, vz::TSingletonPtrPostCreateDoNothing>::GetInstance();
        return;
    }
    const char* colon = std::strchr(argument, ':');
    vz::Private::DeleteAtExit(new Marker{std::string(argument, colon)},
                              static_cast<unsigned>(std::strtoul(colon + 1, nullptr, 10)),
                              DeleteMarker);
}

} // namespace

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        RegisterDeletion(argv[i]);
    }
    return 0;
}
