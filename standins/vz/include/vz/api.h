#pragma once

// What vz.dll exports; its own sources are built with VZ_BUILDING defined.
#if defined(VZ_BUILDING)
#define VZ_API __declspec(dllexport)
#else
#define VZ_API __declspec(dllimport)
#endif
