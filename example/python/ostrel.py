"""ctypes declarations of ostrel.dll's C interface (include/ostrel_c.h, see docs/c-api.md) for
Python on 64-bit Windows. tests/sdk/check_declarations.py holds them to the header.

    import ctypes, ostrel
    lib = ostrel.load("./ostrel.dll")   # declares every function, checks the DLL's version
    engine = ctypes.c_void_p()
    ostrel.check(lib.ostrel_engine_create(ctypes.byref(engine)))

Give load() a path: Python looks a bare DLL name up only in its own folder, System32 and the
folders added with os.add_dll_directory, and given a path it finds vz.dll and vz.reduce.dll
beside ostrel.dll.

Threads and COM: call from the main thread, or from a thread that has called
CoInitializeEx(None, COINIT_APARTMENTTHREADED) (enter_apartment() does), never from a thread that
another module has put in the multithreaded apartment: the library's apartment is
single-threaded, and a first connection from such a thread answers OSTREL_WRONG_THREAD.

Callbacks: keep each LogCallback or EventCallback object referenced for as long as it is set or
subscribed; the DLL holds only its function pointer, which dies with the object. A null callback
is LogCallback() (ctypes refuses None where a callback type is declared).

Strings: file names go in as UTF-8 bytes (path.encode()); the const char* the library returns
come back as bytes.
"""

import ctypes
from ctypes import POINTER, c_char_p, c_float, c_int32, c_uint8, c_uint16, c_uint32, c_uint64
from ctypes import c_void_p

# ---- Versions (ostrel_version.h) ----
OSTREL_VERSION_MAJOR = 1
OSTREL_VERSION_MINOR = 0
OSTREL_VERSION_PATCH = 0
OSTREL_VERSION_STRING = "1.0.0"
OSTREL_VERSION_NUMBER = 1000000

# ---- Status codes ----
ostrel_status = c_int32
OSTREL_OK = 0
OSTREL_NO_SERVER = 1
OSTREL_SERVER_REFUSED = 2
OSTREL_BAD_ARGUMENT = 3
OSTREL_SERVER_CALL_FAILED = 4
OSTREL_NOT_READY = 5
OSTREL_BAD_FILE = 6
OSTREL_OUT_OF_MEMORY = 7
OSTREL_WRONG_THREAD = 8
OSTREL_RELOAD_NEEDED = 9

# ---- Element types ----
OSTREL_INT8 = 0
OSTREL_UINT8 = 1
OSTREL_INT16 = 2
OSTREL_UINT16 = 3
OSTREL_INT32 = 4
OSTREL_UINT32 = 5
OSTREL_INT64 = 6
OSTREL_UINT64 = 7
OSTREL_FLOAT = 8
OSTREL_DOUBLE = 9

# ---- Temperature units ----
OSTREL_CELSIUS = 0
OSTREL_FAHRENHEIT = 1
OSTREL_KELVIN = 2
OSTREL_RANKINE = 3

# ---- Status bytes of converted pixels ----
OSTREL_LUT_VALID = 0
OSTREL_LUT_OUTSIDE = 1
OSTREL_LUT_BELOW = 2
OSTREL_LUT_ABOVE = 4


# ---- Records ----
class FactoryCal(ctypes.Structure):
    _fields_ = [
        ("recordVersion", c_uint32),
        ("cameraSerial", c_uint32),
        ("lensId", c_uint32),
        ("filterId", c_uint32),
        ("detectorWidth", c_uint32),
        ("detectorHeight", c_uint32),
        ("calibrationDay", c_uint32),
        ("housingTempK", c_float),
        ("ambientTempK", c_float),
        ("checksum", c_uint32),
        ("calKind", c_uint32),
        ("calCoef", c_float * 6),
        ("calCoefExtra", c_float),
        ("countsLow", c_uint32),
        ("countsHigh", c_uint32),
        ("tempMinK", c_float),
        ("tempMaxK", c_float),
        ("calAux", c_float),
        ("integrationTime", c_float),
        ("rangeIndex", c_uint32),
        ("emissivityRef", c_float),
        ("shutterTempK", c_float),
        ("flags", c_uint32),
    ]


class ObjectParams(ctypes.Structure):
    _fields_ = [
        ("recordVersion", c_uint32),
        ("emissivity", c_float),
        ("distance", c_float),
        ("relativeHumidity", c_float),
        ("atmosphereTempK", c_float),
        ("reflectedTempK", c_float),
        ("windowTransmission", c_float),
        ("windowTempK", c_float),
        ("windowReflection", c_float),
        ("windowReflectedTempK", c_float),
        ("atmosphereTransmission", c_float),
        ("objFactorA", c_float),
        ("opticsTransmission", c_float),
        ("objTempA", c_float),
        ("objTempB", c_float),
        ("opticsTempK", c_float),
        ("estimateAtmosphere", c_uint32),
        ("objFactorB", c_float),
        ("spanLowK", c_float),
        ("spanHighK", c_float),
    ]


# ---- Callbacks ----
# Windows x64 has one calling convention, which CFUNCTYPE gives.
LogCallback = ctypes.CFUNCTYPE(None, c_void_p, c_char_p)
EventCallback = ctypes.CFUNCTYPE(None, c_void_p, c_uint64)

# ---- Functions: name -> (restype, argtypes) ----
# Engines and subscription tokens are opaque: c_void_p.
FUNCTIONS = {
    # Versions and diagnostics
    "ostrel_status_text": (c_char_p, [ostrel_status]),
    "ostrel_version": (c_uint32, []),
    "ostrel_last_error": (c_char_p, []),
    "ostrel_set_log_handler": (ostrel_status, [LogCallback, c_void_p]),
    # The connection
    "ostrel_check_connection": (ostrel_status, []),
    "ostrel_server_version": (
        ostrel_status,
        [POINTER(c_uint32), POINTER(c_uint32), POINTER(c_uint32)],
    ),
    # The calibration engine
    "ostrel_engine_create": (ostrel_status, [POINTER(c_void_p)]),
    "ostrel_engine_destroy": (ostrel_status, [c_void_p]),
    "ostrel_engine_set_factory_cal": (ostrel_status, [c_void_p, c_uint32, POINTER(FactoryCal)]),
    "ostrel_engine_load_factory_cal": (ostrel_status, [c_void_p, c_uint32, c_char_p]),
    "ostrel_engine_get_factory_cal": (ostrel_status, [c_void_p, c_uint32, POINTER(FactoryCal)]),
    "ostrel_engine_set_object_params": (ostrel_status, [c_void_p, POINTER(ObjectParams)]),
    "ostrel_engine_load_object_params": (ostrel_status, [c_void_p, c_char_p]),
    "ostrel_engine_get_object_params": (ostrel_status, [c_void_p, POINTER(ObjectParams)]),
    "ostrel_engine_set_table_unit": (ostrel_status, [c_void_p, c_uint32]),
    "ostrel_engine_get_table_unit": (ostrel_status, [c_void_p, POINTER(c_uint32)]),
    "ostrel_engine_set_active_presets": (ostrel_status, [c_void_p, c_uint8 * 4]),
    # Conversions: buffers of any element type as c_void_p (ctypes arrays, or numpy's
    # array.ctypes.data); status may be None.
    "ostrel_convert_uniform": (
        ostrel_status,
        [c_void_p, c_uint32, c_void_p, c_uint32, c_void_p, c_uint32, c_uint32, POINTER(c_uint8),
         c_uint32],
    ),
    "ostrel_convert_mapped": (
        ostrel_status,
        [c_void_p, POINTER(c_uint8), c_void_p, c_uint32, c_void_p, c_uint32, c_uint32,
         POINTER(c_uint8), c_uint32],
    ),
    "ostrel_convert_keyed": (
        ostrel_status,
        [c_void_p, POINTER(c_uint32), POINTER(c_uint8), c_void_p, c_uint32, c_void_p, c_uint32,
         c_uint32, POINTER(c_uint8), c_uint32],
    ),
    "ostrel_counts_to_temp": (
        ostrel_status,
        [c_void_p, c_uint32, c_uint16, POINTER(c_float), POINTER(c_uint8), c_uint32],
    ),
    "ostrel_temp_to_counts": (
        ostrel_status,
        [c_void_p, c_uint32, c_float, c_uint32, POINTER(c_uint16)],
    ),
    "ostrel_integration_time_range": (
        ostrel_status,
        [c_void_p, c_uint32, POINTER(c_uint32), POINTER(c_uint32)],
    ),
    "ostrel_temp_range": (
        ostrel_status,
        [c_void_p, c_uint32, c_uint32, POINTER(c_float), POINTER(c_float)],
    ),
    # Notifications
    "ostrel_attach_message_thread": (ostrel_status, []),
    "ostrel_detach_message_thread": (ostrel_status, []),
    "ostrel_subscribe": (ostrel_status, [EventCallback, c_void_p, POINTER(c_void_p)]),
    "ostrel_unsubscribe": (ostrel_status, [c_void_p]),
}


class OstrelError(RuntimeError):
    """A call that did not return OSTREL_OK, with what ostrel_last_error said."""

    def __init__(self, status, text):
        super().__init__(text)
        self.status = status


_library = None


def declare(lib):
    """Sets the restype and argtypes of every function on a loaded ostrel.dll."""
    for name, (restype, argtypes) in FUNCTIONS.items():
        function = getattr(lib, name)
        function.restype = restype
        function.argtypes = argtypes


def version_supported(version):
    """A C host's rule: the DLL's major version is the declarations' and its version is at least
    theirs (a newer minor version only adds)."""
    return version // 1000000 == OSTREL_VERSION_MAJOR and version >= OSTREL_VERSION_NUMBER


def load(path="ostrel.dll"):
    """Loads ostrel.dll once, declares its functions and checks its version; later calls return
    the same library."""
    global _library
    if _library is None:
        lib = ctypes.CDLL(path)
        declare(lib)
        version = lib.ostrel_version()
        if not version_supported(version):
            raise RuntimeError(
                f"ostrel.dll {version} does not serve declarations {OSTREL_VERSION_STRING}"
            )
        _library = lib
    return _library


def check(status):
    """Raises OstrelError, with the calling thread's last error, unless status is OSTREL_OK."""
    if status != OSTREL_OK:
        raise OstrelError(status, load().ostrel_last_error().decode("utf-8", "replace"))


def enter_apartment():
    """Puts the calling thread in a single-threaded COM apartment, for a thread other than the
    main one; pair it with ctypes.windll.ole32.CoUninitialize() when the thread is done."""
    coinit_apartmentthreaded = 0x2
    hr = ctypes.windll.ole32.CoInitializeEx(None, coinit_apartmentthreaded)
    if hr < 0:
        raise OSError(f"CoInitializeEx failed: HRESULT 0x{hr & 0xFFFFFFFF:08X}")
