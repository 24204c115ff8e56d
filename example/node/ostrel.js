// The part of ostrel.dll's C interface (ostrel_c.h) that ostrel_example.js calls, declared for
// Node.js through koffi, with the Windows functions its message loop needs.
'use strict';

// koffi from the usual places (a node_modules above this file, NODE_PATH) or else from the current
// folder's node_modules, where a build beside ostrel.dll may have installed it.
const koffi = require(require.resolve('koffi', { paths: [__dirname, process.cwd()] }));

// The headers these declarations follow. A DLL serves them when its major version is the same
// and its version number is at least this one.
const HEADER_VERSION_MAJOR = 1;
const HEADER_VERSION_NUMBER = 1000000;

const status = {
    OK: 0,
    NO_SERVER: 1,
    SERVER_REFUSED: 2,
    BAD_ARGUMENT: 3,
    SERVER_CALL_FAILED: 4,
    NOT_READY: 5,
    BAD_FILE: 6,
    OUT_OF_MEMORY: 7,
    WRONG_THREAD: 8,
    RELOAD_NEEDED: 9,
};

// Element types of the buffers.
const type = {
    INT8: 0,
    UINT8: 1,
    INT16: 2,
    UINT16: 3,
    INT32: 4,
    UINT32: 5,
    INT64: 6,
    UINT64: 7,
    FLOAT: 8,
    DOUBLE: 9,
};

const unit = { CELSIUS: 0, FAHRENHEIT: 1, KELVIN: 2, RANKINE: 3 };

// Status bytes of converted pixels.
const lut = { VALID: 0, OUTSIDE: 1, BELOW: 2, ABOVE: 4 };

koffi.alias('ostrel_status', 'int32_t');
koffi.opaque('ostrel_engine');
koffi.opaque('ostrel_subscription');

// Temperatures in kelvin.
const factoryCal = koffi.struct('ostrel_factory_cal', {
    recordVersion: 'uint32_t',
    cameraSerial: 'uint32_t',
    lensId: 'uint32_t',
    filterId: 'uint32_t',
    detectorWidth: 'uint32_t',
    detectorHeight: 'uint32_t',
    calibrationDay: 'uint32_t',
    housingTempK: 'float',
    ambientTempK: 'float',
    checksum: 'uint32_t',
    calKind: 'uint32_t',
    calCoef: koffi.array('float', 6, 'Array'),
    calCoefExtra: 'float',
    countsLow: 'uint32_t',
    countsHigh: 'uint32_t',
    tempMinK: 'float',
    tempMaxK: 'float',
    calAux: 'float',
    integrationTime: 'float', // microseconds
    rangeIndex: 'uint32_t',
    emissivityRef: 'float',
    shutterTempK: 'float',
    flags: 'uint32_t',
});

// Temperatures in kelvin.
const objectParams = koffi.struct('ostrel_object_params', {
    recordVersion: 'uint32_t',
    emissivity: 'float',
    distance: 'float',
    relativeHumidity: 'float',
    atmosphereTempK: 'float',
    reflectedTempK: 'float',
    windowTransmission: 'float',
    windowTempK: 'float',
    windowReflection: 'float',
    windowReflectedTempK: 'float',
    atmosphereTransmission: 'float',
    objFactorA: 'float',
    opticsTransmission: 'float',
    objTempA: 'float',
    objTempB: 'float',
    opticsTempK: 'float',
    estimateAtmosphere: 'uint32_t',
    objFactorB: 'float',
    spanLowK: 'float',
    spanHighK: 'float',
});

for (const [record, words] of [[factoryCal, 28], [objectParams, 20]]) {
    if (koffi.sizeof(record) !== words * 4) {
        throw new Error(`${record.name} takes ${koffi.sizeof(record)} bytes, not ${words * 4}`);
    }
}

const eventCallback = koffi.proto('void ostrel_event_callback(void *context, uint64_t value)');

// Buffers (typed arrays) go to the library as pointers to their own memory, so what it writes
// there is in the array when the call returns. Single outputs are one-element arrays.
const prototypes = [
    'uint32_t ostrel_version(void)',
    'const char *ostrel_last_error(void)',
    'ostrel_status ostrel_server_version(_Out_ uint32_t *major, _Out_ uint32_t *minor, ' +
        '_Out_ uint32_t *build)',
    'ostrel_status ostrel_engine_create(_Out_ ostrel_engine **engine)',
    'ostrel_status ostrel_engine_destroy(ostrel_engine *engine)',
    'ostrel_status ostrel_engine_set_factory_cal(ostrel_engine *engine, uint32_t preset, ' +
        'const ostrel_factory_cal *record)',
    'ostrel_status ostrel_engine_load_factory_cal(ostrel_engine *engine, uint32_t preset, ' +
        'const char *path)',
    'ostrel_status ostrel_engine_get_factory_cal(ostrel_engine *engine, uint32_t preset, ' +
        '_Out_ ostrel_factory_cal *record)',
    'ostrel_status ostrel_engine_load_object_params(ostrel_engine *engine, const char *path)',
    'ostrel_status ostrel_engine_set_active_presets(ostrel_engine *engine, const uint8_t *active)',
    'ostrel_status ostrel_convert_uniform(ostrel_engine *engine, uint32_t preset, ' +
        'const void *input, uint32_t in_type, void *output, uint32_t out_type, uint32_t n, ' +
        'uint8_t *status, uint32_t unit)',
    'ostrel_status ostrel_convert_mapped(ostrel_engine *engine, const uint8_t *preset_map, ' +
        'const void *input, uint32_t in_type, void *output, uint32_t out_type, uint32_t n, ' +
        'uint8_t *status, uint32_t unit)',
    'ostrel_status ostrel_convert_keyed(ostrel_engine *engine, const uint32_t *pixel_keys, ' +
        'const uint8_t *key_to_preset, const void *input, uint32_t in_type, void *output, ' +
        'uint32_t out_type, uint32_t n, uint8_t *status, uint32_t unit)',
    'ostrel_status ostrel_counts_to_temp(ostrel_engine *engine, uint32_t preset, ' +
        'uint16_t counts, _Out_ float *temp, _Out_ uint8_t *status, uint32_t unit)',
    'ostrel_status ostrel_temp_to_counts(ostrel_engine *engine, uint32_t preset, float temp, ' +
        'uint32_t unit, _Out_ uint16_t *counts)',
    'ostrel_status ostrel_integration_time_range(ostrel_engine *engine, uint32_t preset, ' +
        '_Out_ uint32_t *min_time, _Out_ uint32_t *max_time)',
    'ostrel_status ostrel_temp_range(ostrel_engine *engine, uint32_t preset, ' +
        'uint32_t integration_time, _Out_ float *min_temp, _Out_ float *max_temp)',
    'ostrel_status ostrel_attach_message_thread(void)',
    'ostrel_status ostrel_detach_message_thread(void)',
    'ostrel_status ostrel_subscribe(ostrel_event_callback *callback, void *context, ' +
        '_Out_ ostrel_subscription **token)',
    'ostrel_status ostrel_unsubscribe(ostrel_subscription *token)',
];

// MSG is handed to the message functions as a 48-byte buffer, never converted: its wParam (the
// notification's value) is 64 bits wide.
const MSG_SIZE = 48;
const PM_REMOVE = 0x0001;
const QS_ALLINPUT = 0x04ff;

const windowsPrototypes = {
    'user32.dll': [
        'uint32_t __stdcall MsgWaitForMultipleObjects(uint32_t count, const void *handles, ' +
            'int wait_all, uint32_t milliseconds, uint32_t wake_mask)',
        'int __stdcall PeekMessageW(void *msg, void *hwnd, uint32_t first, uint32_t last, ' +
            'uint32_t remove)',
        'int __stdcall TranslateMessage(const void *msg)',
        'intptr_t __stdcall DispatchMessageW(const void *msg)',
    ],
    'kernel32.dll': ['uint32_t __stdcall GetTickCount(void)'],
};

// Loads the DLL (OSTREL_DLL, or ostrel.dll from the DLL search path) and declares every function
// above; an object of the functions by their C names, without the "ostrel_" prefix for the
// library's own.
function load(path = process.env.OSTREL_DLL || 'ostrel.dll') {
    const functions = {};
    const declare = (library, prototype, prefix) => {
        const f = library.func(prototype);
        functions[f.info.name.slice(prefix.length)] = f;
    };
    const ostrel = koffi.load(path);
    for (const prototype of prototypes) {
        declare(ostrel, prototype, 'ostrel_');
    }
    for (const [name, list] of Object.entries(windowsPrototypes)) {
        const library = koffi.load(name);
        for (const prototype of list) {
            declare(library, prototype, '');
        }
    }
    return functions;
}

module.exports = {
    koffi,
    HEADER_VERSION_MAJOR,
    HEADER_VERSION_NUMBER,
    status,
    type,
    unit,
    lut,
    factoryCal,
    objectParams,
    eventCallback,
    MSG_SIZE,
    PM_REMOVE,
    QS_ALLINPUT,
    load,
};
