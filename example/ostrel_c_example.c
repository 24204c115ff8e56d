/* ostrel-c-example: the C interface from plain C. Connects to the camera server, loads a factory
   calibration and object parameters from record files into preset 0, and converts a synthetic
   frame of counts spanning the calibrated range into Celsius.
     ostrel-c-example FACTORY_CAL OBJECT_PARAMS */
#include <stdio.h>

#include <ostrel_c.h>

enum { kWidth = 64, kHeight = 48, kPixels = kWidth * kHeight };

static int Fail(const char* what, ostrel_status status) {
    fprintf(stderr, "ostrel-c-example: %s: %s\n", what, ostrel_status_text(status));
    return 1;
}

static int Convert(ostrel_engine* engine, const char* factoryCal, const char* objectParams) {
    static uint16_t counts[kPixels];
    static float temps[kPixels];
    static uint8_t status[kPixels];
    ostrel_factory_cal record;
    ostrel_status result = ostrel_engine_load_factory_cal(engine, 0, factoryCal);
    if (result != OSTREL_OK) {
        return Fail(factoryCal, result);
    }
    result = ostrel_engine_load_object_params(engine, objectParams);
    if (result != OSTREL_OK) {
        return Fail(objectParams, result);
    }
    ostrel_engine_get_factory_cal(engine, 0, &record);
    for (int k = 0; k < kPixels; ++k) {
        counts[k] = (uint16_t)(record.countsLow +
                               (uint32_t)k * (record.countsHigh - record.countsLow) / kPixels);
    }
    result = ostrel_convert_uniform(engine, 0, counts, OSTREL_UINT16, temps, OSTREL_FLOAT, kPixels,
                                    status, OSTREL_CELSIUS);
    if (result != OSTREL_OK) {
        return Fail("conversion", result);
    }
    int valid = 0;
    for (int k = 0; k < kPixels; ++k) {
        valid += status[k] == OSTREL_LUT_VALID;
    }
    printf("Converted %d pixels: %.2f C to %.2f C, %d valid\n", kPixels, temps[0],
           temps[kPixels - 1], valid);
    return 0;
}

int main(int argc, char** argv) {
    if (argc != 3) {
        fprintf(stderr, "ostrel-c-example: usage: ostrel-c-example FACTORY_CAL OBJECT_PARAMS\n");
        return 1;
    }
    uint32_t major = 0, minor = 0, build = 0;
    const ostrel_status connected = ostrel_server_version(&major, &minor, &build);
    if (connected != OSTREL_OK) {
        return Fail("connecting", connected);
    }
    printf("Connected to camera server %u.%u.%u.\n", (unsigned)major, (unsigned)minor,
           (unsigned)build);
    ostrel_engine* engine = NULL;
    const ostrel_status created = ostrel_engine_create(&engine);
    if (created != OSTREL_OK) {
        return Fail("creating the engine", created);
    }
    const int exitCode = Convert(engine, argv[1], argv[2]);
    ostrel_engine_destroy(engine);
    return exitCode;
}
