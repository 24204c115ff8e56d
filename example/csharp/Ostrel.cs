// P/Invoke declarations of ostrel.dll's C interface (include/ostrel_c.h, see docs/c-api.md) for
// .NET 5 or later on 64-bit Windows. tests/sdk/check_declarations.py holds them to the header.
//
// Threads and COM: mark Main [STAThread] and make the first call from it. The library's COM
// apartment is single-threaded, and a .NET thread without [STAThread] is in the multithreaded
// apartment, from which a first connection answers OSTREL_WRONG_THREAD. Calls from other threads
// follow the thread rules of docs/c-api.md.
//
// Callbacks: keep every delegate passed as a callback (ostrel_subscribe, ostrel_set_log_handler)
// in a field for as long as it is subscribed or set. The DLL holds only the function pointer
// marshalled from it, which the garbage collector does not see; a collected delegate's pointer
// crashes the next notification.
//
// Strings: file names go in as UTF-8; the const char* the library returns (status text, last
// error, log lines) are IntPtr, read with Marshal.PtrToStringUTF8 and never freed.
using System;
using System.Runtime.InteropServices;

namespace Ostrel
{
    public static class Native
    {
        public const string Dll = "ostrel.dll";

        // ---- Versions (ostrel_version.h) ----
        public const uint OSTREL_VERSION_MAJOR = 1;
        public const uint OSTREL_VERSION_MINOR = 0;
        public const uint OSTREL_VERSION_PATCH = 0;
        public const string OSTREL_VERSION_STRING = "1.0.0";
        public const uint OSTREL_VERSION_NUMBER = 1000000;

        // ---- Status codes ----
        public const int OSTREL_OK = 0;
        public const int OSTREL_NO_SERVER = 1;
        public const int OSTREL_SERVER_REFUSED = 2;
        public const int OSTREL_BAD_ARGUMENT = 3;
        public const int OSTREL_SERVER_CALL_FAILED = 4;
        public const int OSTREL_NOT_READY = 5;
        public const int OSTREL_BAD_FILE = 6;
        public const int OSTREL_OUT_OF_MEMORY = 7;
        public const int OSTREL_WRONG_THREAD = 8;
        public const int OSTREL_RELOAD_NEEDED = 9;

        // ---- Element types ----
        public const uint OSTREL_INT8 = 0;
        public const uint OSTREL_UINT8 = 1;
        public const uint OSTREL_INT16 = 2;
        public const uint OSTREL_UINT16 = 3;
        public const uint OSTREL_INT32 = 4;
        public const uint OSTREL_UINT32 = 5;
        public const uint OSTREL_INT64 = 6;
        public const uint OSTREL_UINT64 = 7;
        public const uint OSTREL_FLOAT = 8;
        public const uint OSTREL_DOUBLE = 9;

        // ---- Temperature units ----
        public const uint OSTREL_CELSIUS = 0;
        public const uint OSTREL_FAHRENHEIT = 1;
        public const uint OSTREL_KELVIN = 2;
        public const uint OSTREL_RANKINE = 3;

        // ---- Status bytes of converted pixels ----
        public const byte OSTREL_LUT_VALID = 0;
        public const byte OSTREL_LUT_OUTSIDE = 1;
        public const byte OSTREL_LUT_BELOW = 2;
        public const byte OSTREL_LUT_ABOVE = 4;

        // ---- Records ----

        // calCoef must hold exactly 6 elements when the record is passed in.
        [StructLayout(LayoutKind.Sequential)]
        public struct FactoryCal
        {
            public uint recordVersion;
            public uint cameraSerial;
            public uint lensId;
            public uint filterId;
            public uint detectorWidth;
            public uint detectorHeight;
            public uint calibrationDay;
            public float housingTempK;
            public float ambientTempK;
            public uint checksum;
            public uint calKind;
            [MarshalAs(UnmanagedType.ByValArray, SizeConst = 6)] public float[] calCoef;
            public float calCoefExtra;
            public uint countsLow;
            public uint countsHigh;
            public float tempMinK;
            public float tempMaxK;
            public float calAux;
            public float integrationTime;
            public uint rangeIndex;
            public float emissivityRef;
            public float shutterTempK;
            public uint flags;
        }

        [StructLayout(LayoutKind.Sequential)]
        public struct ObjectParams
        {
            public uint recordVersion;
            public float emissivity;
            public float distance;
            public float relativeHumidity;
            public float atmosphereTempK;
            public float reflectedTempK;
            public float windowTransmission;
            public float windowTempK;
            public float windowReflection;
            public float windowReflectedTempK;
            public float atmosphereTransmission;
            public float objFactorA;
            public float opticsTransmission;
            public float objTempA;
            public float objTempB;
            public float opticsTempK;
            public uint estimateAtmosphere;
            public float objFactorB;
            public float spanLowK;
            public float spanHighK;
        }

        // ---- Callbacks ----

        // line is UTF-8 (Marshal.PtrToStringUTF8), valid during the call only.
        [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
        public delegate void LogCallback(IntPtr context, IntPtr line);

        [UnmanagedFunctionPointer(CallingConvention.Cdecl)]
        public delegate void EventCallback(IntPtr context, ulong value);

        // ---- Versions and diagnostics ----

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern IntPtr ostrel_status_text(int status);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern uint ostrel_version();

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern IntPtr ostrel_last_error();

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern int ostrel_set_log_handler(LogCallback callback, IntPtr context);

        // ---- The connection ----

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern int ostrel_check_connection();

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern int ostrel_server_version(out uint major, out uint minor,
            out uint build);

        // ---- The calibration engine ----

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern int ostrel_engine_create(out IntPtr engine);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern int ostrel_engine_destroy(IntPtr engine);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern int ostrel_engine_set_factory_cal(IntPtr engine, uint preset,
            ref FactoryCal record);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern int ostrel_engine_load_factory_cal(IntPtr engine, uint preset,
            [MarshalAs(UnmanagedType.LPUTF8Str)] string path);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern int ostrel_engine_get_factory_cal(IntPtr engine, uint preset,
            out FactoryCal record);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern int ostrel_engine_set_object_params(IntPtr engine,
            ref ObjectParams parameters);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern int ostrel_engine_load_object_params(IntPtr engine,
            [MarshalAs(UnmanagedType.LPUTF8Str)] string path);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern int ostrel_engine_get_object_params(IntPtr engine,
            out ObjectParams parameters);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern int ostrel_engine_set_table_unit(IntPtr engine, uint unit);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern int ostrel_engine_get_table_unit(IntPtr engine, out uint unit);

        // active: 4 bytes, non-zero for each active preset.
        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern int ostrel_engine_set_active_presets(IntPtr engine, byte[] active);

        // ---- Conversions ----
        // Each comes twice: with arrays of UInt16 counts and Float temperatures, and with IntPtr
        // buffers (pinned with GCHandle or fixed) for any element types. status may be null.

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern int ostrel_convert_uniform(IntPtr engine, uint preset, ushort[] input,
            uint inType, float[] output, uint outType, uint n, byte[] status, uint unit);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern int ostrel_convert_uniform(IntPtr engine, uint preset, IntPtr input,
            uint inType, IntPtr output, uint outType, uint n, byte[] status, uint unit);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern int ostrel_convert_mapped(IntPtr engine, byte[] presetMap,
            ushort[] input, uint inType, float[] output, uint outType, uint n, byte[] status,
            uint unit);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern int ostrel_convert_mapped(IntPtr engine, byte[] presetMap,
            IntPtr input, uint inType, IntPtr output, uint outType, uint n, byte[] status,
            uint unit);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern int ostrel_convert_keyed(IntPtr engine, uint[] pixelKeys,
            byte[] keyToPreset, ushort[] input, uint inType, float[] output, uint outType, uint n,
            byte[] status, uint unit);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern int ostrel_convert_keyed(IntPtr engine, uint[] pixelKeys,
            byte[] keyToPreset, IntPtr input, uint inType, IntPtr output, uint outType, uint n,
            byte[] status, uint unit);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern int ostrel_counts_to_temp(IntPtr engine, uint preset, ushort counts,
            out float temp, out byte status, uint unit);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern int ostrel_temp_to_counts(IntPtr engine, uint preset, float temp,
            uint unit, out ushort counts);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern int ostrel_integration_time_range(IntPtr engine, uint preset,
            out uint minTime, out uint maxTime);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern int ostrel_temp_range(IntPtr engine, uint preset, uint integrationTime,
            out float minTemp, out float maxTemp);

        // ---- Notifications ----

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern int ostrel_attach_message_thread();

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern int ostrel_detach_message_thread();

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern int ostrel_subscribe(EventCallback callback, IntPtr context,
            out IntPtr token);

        [DllImport(Dll, CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
        public static extern int ostrel_unsubscribe(IntPtr token);

        // ---- Helpers ----

        // A C host's rule: the DLL's major version is the declarations' and its version is at
        // least theirs (a newer minor version only adds).
        public static bool VersionSupported(uint version)
        {
            return version / 1000000 == OSTREL_VERSION_MAJOR && version >= OSTREL_VERSION_NUMBER;
        }

        // Call once at start, before anything else.
        public static void CheckVersion()
        {
            uint version = ostrel_version();
            if (!VersionSupported(version))
            {
                throw new InvalidOperationException(
                    $"ostrel.dll {version} does not serve declarations {OSTREL_VERSION_STRING}");
            }
        }

        public static string StatusText(int status)
        {
            return Marshal.PtrToStringUTF8(ostrel_status_text(status));
        }

        // Why the calling thread's latest failed call failed; read it before the thread's next
        // call, which may replace it.
        public static string LastError()
        {
            return Marshal.PtrToStringUTF8(ostrel_last_error());
        }
    }
}
