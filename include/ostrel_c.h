/* ostrel.dll's C interface: the same connection, engine and notifications as the C++ classes, for
   hosts built with any compiler or in any language that can call a C function in a DLL. Every
   function but ostrel_status_text, ostrel_version and ostrel_last_error returns an ostrel_status
   (ostrel_status_text names it, ostrel_last_error says why it is not OSTREL_OK) and none throws.
   Text in and out is UTF-8. Plain C99; it compiles as C++ too. See docs/c-api.md. */
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
                                docs/c-api.md (initialise COM on each thread you call from) */
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

/* Status bytes of converted pixels. */
enum {
    OSTREL_LUT_VALID = 0,   /* inside the calibrated range */
    OSTREL_LUT_OUTSIDE = 1, /* outside it, within its margin */
    OSTREL_LUT_BELOW = 2,   /* below the low limit, clamped to it */
    OSTREL_LUT_ABOVE = 4    /* above the high limit, clamped to it */
};

/* ---- Records ------------------------------------------------------------------------------ */

/* A factory calibration for one measurement range: 28 words of 32 bits, as the camera stores
   them; temperatures in kelvin. */
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

/* The object and its surroundings: 20 words of 32 bits; temperatures in kelvin. */
typedef struct ostrel_object_params {
    uint32_t recordVersion;
    float emissivity;
    float distance;
    float relativeHumidity;
    float atmosphereTempK;
    float reflectedTempK;
    float windowTransmission;
    float windowTempK;
    float windowReflection;
    float windowReflectedTempK;
    float atmosphereTransmission;
    float objFactorA; /* first correction ratio; 0 means 1 */
    float opticsTransmission;
    float objTempA; /* first correction temperature */
    float objTempB; /* second correction temperature */
    float opticsTempK;
    uint32_t estimateAtmosphere;
    float objFactorB; /* second correction ratio; 0 means 1 */
    float spanLowK;
    float spanHighK;
} ostrel_object_params;

/* ---- The connection ----------------------------------------------------------------------- */

/* Connects (and lets go again) to see whether the server can be used: OSTREL_OK,
   OSTREL_NO_SERVER or OSTREL_SERVER_REFUSED. */
OSTREL_C_API ostrel_status ostrel_check_connection(void);
/* The version of the server, connecting first if needed. */
OSTREL_C_API ostrel_status ostrel_server_version(uint32_t* major, uint32_t* minor, uint32_t* build);

/* ---- The calibration engine --------------------------------------------------------------- */

/* An engine: four presets, each with a factory calibration and a look-up table the server
   computes. Use an engine on one thread at a time and destroy it on the thread that loaded it;
   engines on different threads may be created, used and destroyed at the same time. A thread
   that reaches the server (loads, table rebuilds, queries) must have initialised COM, unless it
   is the first one the library uses: otherwise OSTREL_WRONG_THREAD.
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

/* The object parameters, sent to every preset's server object, and to the object of every
   preset loaded later. On failure every preset answers OSTREL_RELOAD_NEEDED until a set of the
   object parameters succeeds. */
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

/* The token ends the subscription with ostrel_unsubscribe, which must not run while a callback
   of the subscription is running on another thread. A token that is not live (already
   unsubscribed, or never given) gets OSTREL_BAD_ARGUMENT. */
OSTREL_C_API ostrel_status ostrel_subscribe(ostrel_event_callback callback, void* context,
                                            ostrel_subscription** token);
/* A null token is ignored. */
OSTREL_C_API ostrel_status ostrel_unsubscribe(ostrel_subscription* token);

#ifdef __cplusplus
}
#endif

#endif
