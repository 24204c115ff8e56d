// ostrel-node-example: ostrel.dll's C interface from Node.js through koffi, the same steps and
// output as ostrel-c-example. Checks the DLL's version, connects to the camera server, loads a
// factory calibration into preset 0 and the same calibration at twice the integration time into
// preset 1, converts a synthetic frame through each kind of conversion, asks the scalar and range
// functions, shows what a failed call says and, given a number of seconds, waits that long for a
// notification.
//
//   npm install      (koffi, at the version package.json pins)
//   node ostrel_example.js FACTORY_CAL OBJECT_PARAMS [SECONDS]
//
// koffi comes from a node_modules folder that Node finds (above this file, NODE_PATH) or from the
// current folder's; ostrel.dll from the DLL search path (the current folder among it), or where
// OSTREL_DLL names it.
//
// Threads and COM: the library enters a single-threaded apartment on the first thread it is used
// from, and notifications arrive through that thread's message loop. So a Node.js host makes every
// call on the main JavaScript thread, synchronously: never through a function's .async (which
// runs it on a worker thread) nor from a worker_threads Worker, and never after something has put
// the main thread in the multithreaded apartment (calls from there answer OSTREL_WRONG_THREAD).
// It pumps the main thread's messages (PeekMessageW/DispatchMessageW) for as long as it wants
// notifications; a registered callback runs inside DispatchMessageW. This example pumps in a
// blocking loop, which holds up Node's event loop while it waits.
'use strict';

const PROGRAM = 'ostrel-node-example';
const WIDTH = 64;
const HEIGHT = 48;
const PIXELS = WIDTH * HEIGHT;

// The bindings and the loaded functions; main loads them, so that a missing koffi or DLL is
// reported like any other failure.
let ostrel;
let koffi;
let lib;

function print(line) {
    process.stdout.write(line + '\n');
}

function fail() {
    process.stderr.write(`${PROGRAM}: ${lib.last_error()}\n`);
    return 1;
}

// C's printf("%.<decimals>f") for a double: its exact binary value correctly rounded, ties to
// even, as C does here (Number.prototype.toFixed rounds ties away from zero and switches to
// exponents from 1e21).
function cFixed(x, decimals) {
    if (Number.isNaN(x)) {
        return 'nan';
    }
    if (!Number.isFinite(x)) {
        return x > 0 ? 'inf' : '-inf';
    }
    const view = new DataView(new ArrayBuffer(8));
    view.setFloat64(0, x);
    const bits = view.getBigUint64(0);
    const biasedExponent = Number((bits >> 52n) & 0x7ffn);
    let mantissa = bits & 0xfffffffffffffn;
    let exponent = -1074; // |x| = mantissa * 2^exponent
    if (biasedExponent !== 0) {
        mantissa |= 1n << 52n;
        exponent = biasedExponent - 1075;
    }
    // |x| * 10^decimals = numerator / denominator, exactly
    let numerator = mantissa * 10n ** BigInt(decimals);
    let denominator = 1n;
    if (exponent >= 0) {
        numerator <<= BigInt(exponent);
    } else {
        denominator <<= BigInt(-exponent);
    }
    let rounded = numerator / denominator;
    const twiceRemainder = (numerator % denominator) * 2n;
    if (twiceRemainder > denominator || (twiceRemainder === denominator && (rounded & 1n) === 1n)) {
        rounded += 1n;
    }
    const digits = rounded.toString().padStart(decimals + 1, '0');
    const sign = bits >> 63n ? '-' : '';
    if (decimals === 0) {
        return sign + digits;
    }
    return `${sign}${digits.slice(0, -decimals)}.${digits.slice(-decimals)}`;
}

// One line per conversion: the first and last pixel, the mean and how many are valid.
function summarise(what, temps, statusBytes) {
    let sum = 0;
    let valid = 0;
    for (let k = 0; k < PIXELS; ++k) {
        sum += temps[k];
        valid += statusBytes[k] === ostrel.lut.VALID ? 1 : 0;
    }
    print(`${what}: ${PIXELS} pixels from ${cFixed(temps[0], 2)} to ` +
          `${cFixed(temps[PIXELS - 1], 2)}, mean ${cFixed(sum / PIXELS, 4)}, ${valid} valid`);
}

// Preset 0 from the file, preset 1 the same at twice the integration time; both active.
function loadPresets(engine, factoryCalPath, objectParamsPath) {
    const record = {};
    const active = Uint8Array.of(1, 1, 0, 0);
    if (lib.engine_load_factory_cal(engine, 0, factoryCalPath) !== ostrel.status.OK ||
        lib.engine_load_object_params(engine, objectParamsPath) !== ostrel.status.OK ||
        lib.engine_get_factory_cal(engine, 0, record) !== ostrel.status.OK) {
        return fail();
    }
    record.integrationTime *= 2;
    if (lib.engine_set_factory_cal(engine, 1, record) !== ostrel.status.OK ||
        lib.engine_set_active_presets(engine, active) !== ostrel.status.OK) {
        return fail();
    }
    return 0;
}

function convert(engine) {
    const counts = new Uint16Array(PIXELS);
    const floats = new Float32Array(PIXELS);
    const temps = new Float64Array(PIXELS);
    const statusBytes = new Uint8Array(PIXELS);
    const presetMap = new Uint8Array(PIXELS);
    const keys = new Uint32Array(PIXELS);
    const keyToPreset = Uint8Array.of(0, 1, 1, 0);
    const record = {};
    if (lib.engine_get_factory_cal(engine, 0, record) !== ostrel.status.OK) {
        return fail();
    }
    // In 32-bit unsigned arithmetic, as C computes it.
    const span = (record.countsHigh - record.countsLow) >>> 0;
    for (let k = 0; k < PIXELS; ++k) {
        counts[k] = record.countsLow + Math.floor((Math.imul(k, span) >>> 0) / PIXELS);
        presetMap[k] = k % 2;
        keys[k] = Math.floor(k / WIDTH) % 4;
    }
    if (lib.convert_uniform(engine, 0, counts, ostrel.type.UINT16, floats, ostrel.type.FLOAT,
                            PIXELS, statusBytes, ostrel.unit.CELSIUS) !== ostrel.status.OK) {
        return fail();
    }
    temps.set(floats);
    summarise('Uniform, preset 0, Celsius', temps, statusBytes);
    if (lib.convert_mapped(engine, presetMap, counts, ostrel.type.UINT16, temps,
                           ostrel.type.DOUBLE, PIXELS, statusBytes,
                           ostrel.unit.KELVIN) !== ostrel.status.OK) {
        return fail();
    }
    summarise('Mapped, presets 0 and 1 by column, kelvin', temps, statusBytes);
    if (lib.convert_keyed(engine, keys, keyToPreset, counts, ostrel.type.UINT16, floats,
                          ostrel.type.FLOAT, PIXELS, statusBytes,
                          ostrel.unit.FAHRENHEIT) !== ostrel.status.OK) {
        return fail();
    }
    temps.set(floats);
    summarise('Keyed, presets 0 1 1 0 by row, Fahrenheit', temps, statusBytes);
    return 0;
}

function ask(engine) {
    const temp = [0];
    const statusByte = [0];
    const counts = [0];
    const shortest = [0];
    const longest = [0];
    const low = [0];
    const high = [0];
    if (lib.counts_to_temp(engine, 0, 20000, temp, statusByte,
                           ostrel.unit.CELSIUS) !== ostrel.status.OK) {
        return fail();
    }
    print(`Count 20000 through preset 0: ${cFixed(temp[0], 2)} C, status ${statusByte[0]}`);
    if (lib.temp_to_counts(engine, 0, 50.0, ostrel.unit.CELSIUS, counts) !== ostrel.status.OK) {
        return fail();
    }
    print(`50.00 C through preset 0: count ${counts[0]}`);
    if (lib.integration_time_range(engine, 0, shortest, longest) !== ostrel.status.OK) {
        return fail();
    }
    print(`Preset 0 integration times: ${shortest[0]} to ${longest[0]} us`);
    if (lib.temp_range(engine, 0, longest[0], low, high) !== ostrel.status.OK) {
        return fail();
    }
    print(`At ${longest[0]} us preset 0 covers ${cFixed(low[0], 2)} C to ${cFixed(high[0], 2)} C`);
    if (lib.engine_load_factory_cal(engine, 2, 'missing.txt') !== ostrel.status.OK) {
        print(`A failed call says why: ${lib.last_error()}`);
    }
    return 0;
}

// The context is memory of our own that the callback writes the value into, as a C host would.
function onNotification(context, value) {
    koffi.encode(context, 'uint64_t', value);
}

// Notifications arrive on this thread, from its message loop.
function awaitNotification(seconds) {
    const received = koffi.alloc('uint64_t', 1);
    const callback = koffi.register(onNotification, koffi.pointer(ostrel.eventCallback));
    try {
        koffi.encode(received, 'uint64_t', 0);
        const token = [null];
        if (lib.attach_message_thread() !== ostrel.status.OK ||
            lib.subscribe(callback, received, token) !== ostrel.status.OK) {
            return fail();
        }
        const value = () => BigInt(koffi.decode(received, 'uint64_t'));
        const limit = Math.imul(seconds, 1000) >>> 0;
        const message = Buffer.alloc(ostrel.MSG_SIZE);
        const start = lib.GetTickCount();
        for (let waited = 0; value() === 0n && waited < limit;
             waited = (lib.GetTickCount() - start) >>> 0) {
            lib.MsgWaitForMultipleObjects(0, null, 0, limit - waited, ostrel.QS_ALLINPUT);
            while (lib.PeekMessageW(message, null, 0, 0, ostrel.PM_REMOVE)) {
                lib.TranslateMessage(message);
                lib.DispatchMessageW(message);
            }
        }
        lib.unsubscribe(token[0]);
        lib.detach_message_thread();
        if (value() === 0n) {
            print(`No notification within ${seconds} s`);
            return 1;
        }
        print(`Notification: ${value()}`);
        return 0;
    } finally {
        koffi.unregister(callback);
        koffi.free(received);
    }
}

// text as C's strtoul(text, NULL, 10) reads it for a 32-bit unsigned long: leading white space,
// a sign, the digits up to the first other character; a negative number wraps around, and one out
// of range gives the largest value.
function parseSeconds(text) {
    const match = /^[ \t\n\v\f\r]*([+-]?)([0-9]*)/.exec(text);
    const magnitude = BigInt(match[2] || '0');
    if (magnitude > 0xffffffffn) {
        return 0xffffffff;
    }
    return Number(BigInt.asUintN(32, match[1] === '-' ? -magnitude : magnitude));
}

function main(args) {
    if (args.length < 2 || args.length > 3) {
        process.stderr.write(`${PROGRAM}: usage: ${PROGRAM} FACTORY_CAL OBJECT_PARAMS ` +
                             '[SECONDS]\n');
        return 1;
    }
    try {
        ostrel = require('./ostrel');
        koffi = ostrel.koffi;
        lib = ostrel.load();
    } catch (error) {
        process.stderr.write(`${PROGRAM}: ${error.message}\n`);
        return 1;
    }
    const version = lib.version();
    if (Math.floor(version / 1000000) !== ostrel.HEADER_VERSION_MAJOR ||
        version < ostrel.HEADER_VERSION_NUMBER) {
        const headers = ostrel.HEADER_VERSION_NUMBER;
        process.stderr.write(`${PROGRAM}: ostrel.dll ${version} does not serve headers ` +
                             `${Math.floor(headers / 1000000)}.${Math.floor(headers / 1000) % 1000}.` +
                             `${headers % 1000}\n`);
        return 1;
    }
    print(`ostrel.dll ${Math.floor(version / 1000000)}.${Math.floor(version / 1000) % 1000}.` +
          `${version % 1000}`);
    const major = [0];
    const minor = [0];
    const build = [0];
    if (lib.server_version(major, minor, build) !== ostrel.status.OK) {
        return fail();
    }
    print(`Connected to camera server ${major[0]}.${minor[0]}.${build[0]}.`);
    const engine = [null];
    if (lib.engine_create(engine) !== ostrel.status.OK) {
        return fail();
    }
    let exitCode = loadPresets(engine[0], args[0], args[1]);
    exitCode = exitCode !== 0 ? exitCode : convert(engine[0]);
    exitCode = exitCode !== 0 ? exitCode : ask(engine[0]);
    lib.engine_destroy(engine[0]);
    if (exitCode === 0 && args.length === 3) {
        exitCode = awaitNotification(parseSeconds(args[2]));
    }
    return exitCode;
}

if (require.main === module) {
    process.exitCode = main(process.argv.slice(2));
}

module.exports = { cFixed, parseSeconds };
