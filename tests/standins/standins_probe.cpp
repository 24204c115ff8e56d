// A process of its own for the stand-in test that watches what happens as vz.dll unloads:
//   standins_probe [name:order | singleton]...
// registers deletions that print their names when vz.dll runs them; "singleton" creates a
// TSingletonPtr instance of order 3 that prints "singleton".
#include <vz/singleton.h>

#include <windows.h>

#include <cstdio>
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

bool RegisterDeletion(const char* argument) {
    if (std::strcmp(argument, "singleton") == 0) {
        vz::TSingletonPtr<LoudSingleton, 3, 0, vz::TSingletonPtrPostCreateDoNothing>::GetInstance();
        return true;
    }
    const char* colon = std::strchr(argument, ':');
    char* end = nullptr;
    const unsigned long order = colon == nullptr ? 0 : std::strtoul(colon + 1, &end, 10);
    if (colon == nullptr || colon == argument || end == colon + 1 || *end != '\0') {
        return false;
    }
    vz::Private::DeleteAtExit(new Marker{std::string(argument, colon)},
                              static_cast<unsigned>(order), DeleteMarker);
    return true;
}

} // namespace

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        if (!RegisterDeletion(argv[i])) {
            std::fprintf(stderr, "expected name:order or singleton, got \"%s\"\n", argv[i]);
            return 2;
        }
    }
    return 0;
}
