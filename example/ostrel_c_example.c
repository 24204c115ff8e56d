/* ostrel-c-example: the C interface from plain C. Checks the DLL's version, connects to the camera
   server, loads a factory calibration into preset 0 and the same calibration at twice the
   integration time into preset 1, converts a synthetic frame of counts spanning the calibrated
   range through each kind of conversion, asks the scalar and range functions, shows what a failed
   call says, and, given a number of seconds, waits that long for a notification from the server.
     ostrel-c-example FACTORY_CAL OBJECT_PARAMS [SECONDS]
   The Go and Node.js examples beside it do the same and print the same lines. */
#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>

#include <windows.h>

#include <ostrel_c.h>

enum { kWidth = 64, kHeight = 48, kPixels = kWidth * kHeight };

static int Fail(void) {
    fprintf(stderr, "ostrel-c-example: %s\n", ostrel_last_error());
    return 1;
}

/* One line per conversion: the first and last pixel, the mean and how many are valid. */
static void Summarise(const char* what, const double* temps, const uint8_t* status) {
    double sum = 0;
    int valid = 0;
    for (int k = 0; k < kPixels; ++k) {
        sum += temps[k];
        valid += status[k] == OSTREL_LUT_VALID;
    }
    printf("%s: %d pixels from %.2f to %.2f, mean %.4f, %d valid\n", what, kPixels, temps[0],
           temps[kPixels - 1], sum / kPixels, valid);
}

/* Preset 0 from the file, preset 1 the same at twice the integration time; both active. */
static int LoadPresets(ostrel_engine* engine, const char* factoryCal, const char* objectParams) {
    ostrel_factory_cal record;
    static const uint8_t active[4] = {1, 1, 0, 0};
    if (ostrel_engine_load_factory_cal(engine, 0, factoryCal) != OSTREL_OK ||
        ostrel_engine_load_object_params(engine, objectParams) != OSTREL_OK ||
        ostrel_engine_get_factory_cal(engine, 0, &record) != OSTREL_OK) {
        return Fail();
    }
    record.integrationTime *= 2;
    if (ostrel_engine_set_factory_cal(engine, 1, &record) != OSTREL_OK ||
        ostrel_engine_set_active_presets(engine, active) != OSTREL_OK) {
        return Fail();
    }
    return 0;
}

static int Convert(ostrel_engine* engine) {
    static uint16_t counts[kPixels];
    static float floats[kPixels];
    static double temps[kPixels];
    static uint8_t status[kPixels];
    static uint8_t presetMap[kPixels];
    static uint32_t keys[kPixels];
    static const uint8_t keyToPreset[4] = {0, 1, 1, 0};
    ostrel_factory_cal record;
    ostrel_engine_get_factory_cal(engine, 0, &record);
    for (int k = 0; k < kPixels; ++k) {
        counts[k] = (uint16_t)(record.countsLow +
                               (uint32_t)k * (record.countsHigh - record.countsLow) / kPixels);
        presetMap[k] = (uint8_t)(k % 2);
        keys[k] = (uint32_t)(k / kWidth % 4);
    }
    if (ostrel_convert_uniform(engine, 0, counts, OSTREL_UINT16, floats, OSTREL_FLOAT, kPixels,
                               status, OSTREL_CELSIUS) != OSTREL_OK) {
        return Fail();
    }
    for (int k = 0; k < kPixels; ++k) {
        temps[k] = floats[k];
    }
    Summarise("Uniform, preset 0, Celsius", temps, status);
    if (ostrel_convert_mapped(engine, presetMap, counts, OSTREL_UINT16, temps, OSTREL_DOUBLE,
                              kPixels, status, OSTREL_KELVIN) != OSTREL_OK) {
        return Fail();
    }
    Summarise("Mapped, presets 0 and 1 by column, kelvin", temps, status);
    if (ostrel_convert_keyed(engine, keys, keyToPreset, counts, OSTREL_UINT16, floats, OSTREL_FLOAT,
                             kPixels, status, OSTREL_FAHRENHEIT) != OSTREL_OK) {
        return Fail();
    }
    for (int k = 0; k < kPixels; ++k) {
        temps[k] = floats[k];
    }
    Summarise("Keyed, presets 0 1 1 0 by row, Fahrenheit", temps, status);
    return 0;
}

static int Ask(ostrel_engine* engine) {
    float temp = 0, low = 0, high = 0;
    uint8_t status = 0;
    uint16_t counts = 0;
    uint32_t shortest = 0, longest = 0;
    if (ostrel_counts_to_temp(engine, 0, 20000, &temp, &status, OSTREL_CELSIUS) != OSTREL_OK) {
        return Fail();
    }
    printf("Count 20000 through preset 0: %.2f C, status %u\n", temp, (unsigned)status);
    if (ostrel_temp_to_counts(engine, 0, 50.0f, OSTREL_CELSIUS, &counts) != OSTREL_OK) {
        return Fail();
    }
    printf("50.00 C through preset 0: count %u\n", (unsigned)counts);
    if (ostrel_integration_time_range(engine, 0, &shortest, &longest) != OSTREL_OK) {
        return Fail();
    }
    printf("Preset 0 integration times: %u to %u us\n", (unsigned)shortest, (unsigned)longest);
    if (ostrel_temp_range(engine, 0, longest, &low, &high) != OSTREL_OK) {
        return Fail();
    }
    printf("At %u us preset 0 covers %.2f C to %.2f C\n", (unsigned)longest, low, high);
    if (ostrel_engine_load_factory_cal(engine, 2, "missing.txt") != OSTREL_OK) {
        printf("A failed call says why: %s\n", ostrel_last_error());
    }
    return 0;
}

static void OnNotification(void* context, uint64_t value) {
    uint64_t* received = (uint64_t*)context;
    *received = value;
}

/* Notifications arrive on this thread, from its message loop. */
static int AwaitNotification(unsigned seconds) {
    ostrel_subscription* token = NULL;
    uint64_t received = 0;
    if (ostrel_attach_message_thread() != OSTREL_OK ||
        ostrel_subscribe(OnNotification, &received, &token) != OSTREL_OK) {
        return Fail();
    }
    const DWORD start = GetTickCount();
    for (DWORD waited = 0; received == 0 && waited < seconds * 1000u;
         waited = GetTickCount() - start) {
        MsgWaitForMultipleObjects(0, NULL, FALSE, seconds * 1000u - waited, QS_ALLINPUT);
        MSG message;
        while (PeekMessageW(&message, NULL, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    ostrel_unsubscribe(token);
    ostrel_detach_message_thread();
    if (received == 0) {
        printf("No notification within %u s\n", seconds);
        return 1;
    }
    printf("Notification: %" PRIu64 "\n", received);
    return 0;
}

int main(int argc, char** argv) {
    if (argc < 3 || argc > 4) {
        fprintf(stderr, "ostrel-c-example: usage: ostrel-c-example FACTORY_CAL OBJECT_PARAMS "
                        "[SECONDS]\n");
        return 1;
    }
    const uint32_t version = ostrel_version();
    if (version / 1000000 != OSTREL_VERSION_MAJOR || version < OSTREL_VERSION_NUMBER) {
        fprintf(stderr, "ostrel-c-example: ostrel.dll %u does not serve headers %s\n",
                (unsigned)version, OSTREL_VERSION_STRING);
        return 1;
    }
    printf("ostrel.dll %u.%u.%u\n", (unsigned)(version / 1000000),
           (unsigned)(version / 1000 % 1000), (unsigned)(version % 1000));
    uint32_t major = 0, minor = 0, build = 0;
    if (ostrel_server_version(&major, &minor, &build) != OSTREL_OK) {
        return Fail();
    }
    printf("Connected to camera server %u.%u.%u.\n", (unsigned)major, (unsigned)minor,
           (unsigned)build);
    ostrel_engine* engine = NULL;
    if (ostrel_engine_create(&engine) != OSTREL_OK) {
        return Fail();
    }
    int exitCode = LoadPresets(engine, argv[1], argv[2]);
    exitCode = exitCode != 0 ? exitCode : Convert(engine);
    exitCode = exitCode != 0 ? exitCode : Ask(engine);
    ostrel_engine_destroy(engine);
    if (exitCode == 0 && argc == 4) {
        exitCode = AwaitNotification((unsigned)strtoul(argv[3], NULL, 10));
    }
    return exitCode;
}
