#pragma once

// What vz.reduce.dll exports; its own sources are built with VZ_REDUCE_BUILDING defined.
#if !defined(_WIN32)
// Built natively into the file readers' fuzz targets: no DLL.
#define VZ_REDUCE_API
#elif defined(VZ_REDUCE_BUILDING)
#define VZ_REDUCE_API __declspec(dllexport)
#else
#define VZ_REDUCE_API __declspec(dllimport)
#endif
