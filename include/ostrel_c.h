/* ostrel.dll's C interface: the same connection, engine and notifications as the C++ classes, for
   hosts built with any compiler or in any language that can call a C function in a DLL. Every
   function but ostrel_status_text, ostrel_version and ostrel_last_error returns an ostrel_status
   (ostrel_status_text names it, ostrel_last_error says why it is not OSTREL_OK) and none throws.
   Text in and out is UTF-8. Plain C99; it compiles as C++ too. See c-api.md (share/doc/ostrel in
   the SDK). */
#ifndef OSTREL_C_H
#define OSTREL_C_H

#include <stdint.h>

#include "ostrel_version.h"

#if defined(OSTREL_BUILDING)
#define OSTREL_C_API __declspec(dllexport)
#else
#define OSTREL_C_API __declspec(dllimport)
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Status codes ------------------------------------------------------------------------- */

typedef int32_t ostrel_status;
enum {
    OSTREL_OK = 0,
    OSTREL_NO_SERVER = 1,          /* the camera server can't be reached (not registered?) */
    OSTREL_SERVER_REFUSED = 2,     /* the server is older than 5.90.4, or refused for Pleora */
    OSTREL_BAD_ARGUMENT = 3,       /* a null pointer, preset above 3, unknown type or unit, n 0 */
    OSTREL_SERVER_CALL_FAILED = 4, /* the server failed a call, or answered "not done" */
    OSTREL_NOT_READY = 5,          /* the server's calibration service is not available */
    OSTREL_BAD_FILE = 6,           /* a record file can't be read or is malformed */
    OSTREL_OUT_OF_MEMORY = 7,
    OSTREL_WRONG_THREAD = 8, /* not on this thread: see the function, and the thread rules in
                                c-api.md (initialise COM on each thread you call from) */
    OSTREL_RELOAD_NEEDED = 9 /* the preset's last factory calibration, or the last object
                                parameters, failed to load: set them again */
};

/* ---- Versions and diagnostics ------------------------------------------------------------ */

/* The status's English text, for messages: static, never null. */
OSTREL_C_API const char* ostrel_status_text(ostrel_status status);

/* The loaded DLL's version, as OSTREL_VERSION_NUMBER computes it. A host built with these headers
   works with a DLL of the same major version whose number is at least OSTREL_VERSION_NUMBER. */
OSTREL_C_API uint32_t ostrel_version(void);

/* Why the calling thread's latest call that did not return OSTREL_OK failed, in English: the
   function, the status's text and what the library knows of the cause (the server's call and
   HRESULT, the record file's line and field). Never null; empty while no call of the thread has
   failed. The text stays valid until the thread's next call that fails. */
OSTREL_C_API const char* ostrel_last_error(void);

/* Receives the library's log lines, without a line end, on whichever thread writes one; a line
   is valid during the call only. Lines are rare (a refused connection). A handler must not call
   ostrel_set_log_handler. */
typedef void (*ostrel_log_callback)(void* context, const char* line);
/* Sends every later log line to callback with context; once this returns, the previous handler
   is not running and is not called again. A null callback restores the default, standard error
   and only the lines the library writes without being asked. */
OSTREL_C_API ostrel_status ostrel_set_log_handler(ostrel_log_callback callback, void* context);

/* ---- Element types and units -------------------------------------------------------------- */

/* Element types of the buffers, as 32-bit codes. */
enum {
    OSTREL_INT8 = 0,
    OSTREL_UINT8 = 1,
    OSTREL_INT16 = 2,
    OSTREL_UINT16 = 3,
    OSTREL_INT32 = 4,
    OSTREL_UINT32 = 5,
    OSTREL_INT64 = 6,
    OSTREL_UINT64 = 7,
    OSTREL_FLOAT = 8,
    OSTREL_DOUBLE = 9
};

/* Temperature units, as 32-bit codes. */
enum { OSTREL_CELSIUS = 0, OSTREL_FAHRENHEIT = 1, OSTREL_KELVIN = 2, OSTREL_RANKINE = 3 };

/* Status bytes of converted pixels, one per table entry. The calibrated range is the factory
   record's tempMinK..tempMaxK narrowed to the server's values for the counts from countsLow up
   to, but not including, countsHigh, with a margin at each end of 5 degrees or 5 % of the end's
   Celsius value, whichever is larger. Walking outward from the count halfway between countsLow
   and countsHigh, entries are 0 until the first count beyond countsLow or countsHigh or with a
   value outside the range; from there they are 1 until the first value beyond the margin too,
   and from that on 2 below or 4 above, holding the margin's limit. Above, when no value goes
   beyond the margin, every entry from the first outside the range on is 4 all the same (with the
   sample records, counts 61917 to 65535 read 157.5 C where the server gives 150.0 to 156.4 C);
   below, such entries stay 1. */
enum {
    OSTREL_LUT_VALID = 0,   /* inside the calibrated range */
    OSTREL_LUT_OUTSIDE = 1, /* outside it, within the margin: holds the server's value */
    OSTREL_LUT_BELOW = 2,   /* below the low margin: holds the low margin's limit */
    OSTREL_LUT_ABOVE = 4    /* above the high margin, or anywhere above the range when no value
                               is: holds the high margin's limit */
};

/* ---- Records ------------------------------------------------------------------------------ */

/* A factory calibration for one measurement range: 28 words of 32 bits, as the camera stores them;
   temperatures in kelvin. The engine sends calKind, calCoef, calCoefExtra (not for kind 2),
   countsLow, countsHigh, tempMinK, tempMaxK, calAux and integrationTime (truncated) to the server,
   and bounds the table with the four limits; it keeps the other fields but does not use them. */
typedef struct ostrel_factory_cal {
    uint32_t recordVersion;
    uint32_t cameraSerial;
    uint32_t lensId;
    uint32_t filterId;
    uint32_t detectorWidth;
    uint32_t detectorHeight;
    uint32_t calibrationDay;
    float housingTempK;
    float ambientTempK;
    uint32_t checksum;
    uint32_t calKind; /* 2 selects the second kind of model */
    float calCoef[6];
    float calCoefExtra;
    uint32_t countsLow;
    uint32_t countsHigh;
    float tempMinK;
    float tempMaxK;
    float calAux;
    float integrationTime; /* microseconds */
    uint32_t rangeIndex;
    float emissivityRef;
    float shutterTempK;
    uint32_t flags;
} ostrel_factory_cal;

/* The object and its surroundings: 20 words of 32 bits; temperatures in kelvin. The engine sends
   four fields to the server, objFactorA, objTempA, objFactorB and objTempB, and keeps the others
   without using them. The C interface sends them to every preset's server object and again to the
   new object of every preset loaded later, so set them before or after the factory calibrations:
   the order does not matter here (it does in the C++ classes). */
typedef struct ostrel_object_params {
    uint32_t recordVersion;       /* layout version of the record; not used by the engine */
    float emissivity;             /* not used by the engine; the emissivity is objFactorA */
    float distance;               /* lens to object, metres; not used by the engine */
    float relativeHumidity;       /* of the air, 0 to 1; not used by the engine */
    float atmosphereTempK;        /* not used by the engine; the air's temperature is objTempB */
    float reflectedTempK;         /* not used by the engine; reflected temperature: objTempA */
    float windowTransmission;     /* of a window in the path; not used by the engine */
    float windowTempK;            /* of that window; not used by the engine */
    float windowReflection;       /* of that window; not used by the engine */
    float windowReflectedTempK;   /* of what that window reflects; not used by the engine */
    float atmosphereTransmission; /* not used by the engine; the transmission is objFactorB */
    float objFactorA;             /* emissivity of the object's surface; 0 is sent as 1 */
    float opticsTransmission;     /* of external optics; not used by the engine */
    float objTempA;               /* reflected temperature, sent in Celsius (0 as -273.15) */
    float objTempB;               /* air temperature on the path, sent in Celsius (0 as -273.15) */
    float opticsTempK;            /* of external optics; not used by the engine */
    uint32_t estimateAtmosphere;  /* not used by the engine, which sends objFactorB as it is */
    float objFactorB;             /* transmission of the air along the path; 0 is sent as 1 */
    float spanLowK;               /* lowest temperature of interest; not used by the engine */
    float spanHighK;              /* highest temperature of interest; not used by the engine */
} ostrel_object_params;

/* ---- The connection ----------------------------------------------------------------------- */
/* Threads: see the engine section. */

/* Connects (and lets go again) to see whether the server can be used: OSTREL_OK,
   OSTREL_NO_SERVER or OSTREL_SERVER_REFUSED. */
OSTREL_C_API ostrel_status ostrel_check_connection(void);
/* The version of the server, connecting first if needed. */
OSTREL_C_API ostrel_status ostrel_server_version(uint32_t* major, uint32_t* minor, uint32_t* build);

/* ---- The calibration engine --------------------------------------------------------------- */

/* Threads, for engines, the connection and notifications. Calibration objects, an engine's
   included, belong to the COM apartment of the thread that creates them: make an engine's calls
   that reach the server (loads, object parameters, queries, and table rebuilds, which the first
   conversion after a change makes) and its destruction on the thread that loads it, and its other
   calls one at a time. Once the tables a conversion brings up to date are current, any number of
   threads, COM or none, may convert through the engine at once, taking no lock, while no thread
   changes it. Engines on different threads may run side by side: the C interface runs its calls
   that reach the server one at a time; C++ engines take no lock, and calibration objects are
   counted without one, so a C++ host makes and drops them (an engine's first server call,
   SetBroadCal, destroying an engine, GetOstrelCal, copying or dropping a COstrelCal) one thread at
   a time. Calls on the connection (COstrel, ostrel_check_connection, ostrel_server_version) may
   come from any thread and run one at a time. Each thread that reaches the server initialises COM
   first, except the first, for which the library does it (so it must not be in the multithreaded
   apartment). Notifications arrive on the message thread (ostrel_attach_message_thread,
   vz::messageQueueInvoker), which pumps messages: callbacks run there (or through the invoker they
   were attached with), and subscriptions are made and ended there only. */

/* An engine: four presets, each with a factory calibration and a look-up table the server computes.
   A call that must reach the server from a thread without COM, once the library's apartment is
   another thread's, answers OSTREL_WRONG_THREAD.
   Every OSTREL_OK answer is the one a new engine, given the same records, parameters, units and
   active presets, would give. When a call that changes a preset's server object fails part of
   the way, the preset answers OSTREL_RELOAD_NEEDED (and nothing else) until it is set again. */
typedef struct ostrel_engine ostrel_engine;

OSTREL_C_API ostrel_status ostrel_engine_create(ostrel_engine** engine);
/* A null engine is ignored. */
OSTREL_C_API ostrel_status ostrel_engine_destroy(ostrel_engine* engine);

/* Loads a preset's factory calibration into a new server object, with the object parameters
   set before, if any. On failure the preset's conversions and queries answer
   OSTREL_RELOAD_NEEDED until a load of that preset succeeds (OSTREL_NOT_READY failures, which
   reach no server object, excepted). */
OSTREL_C_API ostrel_status ostrel_engine_set_factory_cal(ostrel_engine* engine, uint32_t preset,
                                                         const ostrel_factory_cal* record);
/* The same from a record file of "name = value" lines, named in UTF-8. */
OSTREL_C_API ostrel_status ostrel_engine_load_factory_cal(ostrel_engine* engine, uint32_t preset,
                                                          const char* path);
OSTREL_C_API ostrel_status ostrel_engine_get_factory_cal(ostrel_engine* engine, uint32_t preset,
                                                         ostrel_factory_cal* record);

/* Sends the object parameters to every preset's server object (see ostrel_object_params). On
   failure every preset answers OSTREL_RELOAD_NEEDED until a set of the object parameters succeeds.
 */
OSTREL_C_API ostrel_status ostrel_engine_set_object_params(ostrel_engine* engine,
                                                           const ostrel_object_params* params);
OSTREL_C_API ostrel_status ostrel_engine_load_object_params(ostrel_engine* engine,
                                                            const char* path);
OSTREL_C_API ostrel_status ostrel_engine_get_object_params(ostrel_engine* engine,
                                                           ostrel_object_params* params);

/* The unit the tables hold their temperatures in (Celsius unless set). */
OSTREL_C_API ostrel_status ostrel_engine_set_table_unit(ostrel_engine* engine, uint32_t unit);
OSTREL_C_API ostrel_status ostrel_engine_get_table_unit(ostrel_engine* engine, uint32_t* unit);

/* The presets the per-pixel and keyed conversions bring up to date: active[p] non-zero for
   preset p (all four active unless set, so that those conversions fail until all four are
   loaded). Name only active presets in preset maps and key tables. */
OSTREL_C_API ostrel_status ostrel_engine_set_active_presets(ostrel_engine* engine,
                                                            const uint8_t active[4]);

/* ---- Conversions -------------------------------------------------------------------------- */

/* Each converts n elements of type in_type into temperatures of unit as elements of out_type,
   bringing the tables it needs up to date first. status, if not null, receives one status byte
   per element. Input and output may be the same buffer when their types have the same size.
   Preset maps and keys are trusted: a preset above 3 or a key beyond the key table reads memory
   it should not. */

/* Every element through one preset's table. */
OSTREL_C_API ostrel_status ostrel_convert_uniform(ostrel_engine* engine, uint32_t preset,
                                                  const void* in, uint32_t in_type, void* out,
                                                  uint32_t out_type, uint32_t n, uint8_t* status,
                                                  uint32_t unit);
/* Element k through the table of preset preset_map[k]. */
OSTREL_C_API ostrel_status ostrel_convert_mapped(ostrel_engine* engine, const uint8_t* preset_map,
                                                 const void* in, uint32_t in_type, void* out,
                                                 uint32_t out_type, uint32_t n, uint8_t* status,
                                                 uint32_t unit);
/* Element k through the table of preset key_to_preset[pixel_keys[k]]. */
OSTREL_C_API ostrel_status ostrel_convert_keyed(ostrel_engine* engine, const uint32_t* pixel_keys,
                                                const uint8_t* key_to_preset, const void* in,
                                                uint32_t in_type, void* out, uint32_t out_type,
                                                uint32_t n, uint8_t* status, uint32_t unit);

/* One count through a preset's table; status may be null. */
OSTREL_C_API ostrel_status ostrel_counts_to_temp(ostrel_engine* engine, uint32_t preset,
                                                 uint16_t counts, float* temp, uint8_t* status,
                                                 uint32_t unit);
/* The count of a temperature, as the server computes it for the preset. */
OSTREL_C_API ostrel_status ostrel_temp_to_counts(ostrel_engine* engine, uint32_t preset, float temp,
                                                 uint32_t unit, uint16_t* counts);

/* The integration times (microseconds) at the two ends of the preset's calibrated range. */
OSTREL_C_API ostrel_status ostrel_integration_time_range(ostrel_engine* engine, uint32_t preset,
                                                         uint32_t* min_time, uint32_t* max_time);
/* The temperatures (Celsius, whatever the table unit) the preset covers at an integration time.
   A query: the preset converts afterwards exactly as before. */
OSTREL_C_API ostrel_status ostrel_temp_range(ostrel_engine* engine, uint32_t preset,
                                             uint32_t integration_time, float* min_temp,
                                             float* max_temp);

/* ---- Notifications ------------------------------------------------------------------------ */

/* Runs on the thread that called ostrel_attach_message_thread, from its message loop, with the
   context given at subscription and the notification's value. */
typedef void (*ostrel_event_callback)(void* context, uint64_t value);
typedef struct ostrel_subscription ostrel_subscription;

/* Makes the calling thread the one notifications arrive on. It must run a message loop
   (GetMessage/DispatchMessage) for as long as notifications are wanted; call it before the first
   subscription. */
OSTREL_C_API ostrel_status ostrel_attach_message_thread(void);
OSTREL_C_API ostrel_status ostrel_detach_message_thread(void);

/* The token ends the subscription with ostrel_unsubscribe. Threads: see the engine section. */
OSTREL_C_API ostrel_status ostrel_subscribe(ostrel_event_callback callback, void* context,
                                            ostrel_subscription** token);
/* A null token is ignored; a token that is not live (already unsubscribed, or never given) gets
   OSTREL_BAD_ARGUMENT. */
OSTREL_C_API ostrel_status ostrel_unsubscribe(ostrel_subscription* token);

#ifdef __cplusplus
}
#endif

#endif
