#include "module_state.h"

bool gComInitialized = false;

IOstrelHost* gOstrelHost = nullptr;
std::atomic<std::uint32_t> gHostRefs{0};
std::int32_t gCalRefs = 0;

std::uint32_t gServerMajor = 0;
std::uint32_t gServerMinor = 0;
std::uint32_t gServerBuild = 0;
thread_local ConnectionFailure gLastConnectionFailure = ConnectionFailure::kNone;
