#include <ostrel_c.h>

extern "C" const char* ostrel_status_text(ostrel_status status) {
    switch (status) {
    case OSTREL_OK:
        return "success";
    case OSTREL_NO_SERVER:
        return "the camera server can't be reached (is it registered?)";
    case OSTREL_SERVER_REFUSED:
        return "the camera server is older than 5.90.4 or refused for the Pleora library";
    case OSTREL_BAD_ARGUMENT:
        return "bad argument: a null pointer, a preset above 3, an unknown element type or unit, "
               "or no elements";
    case OSTREL_SERVER_CALL_FAILED:
        return "the camera server failed a call";
    case OSTREL_NOT_READY:
        return "the camera server's calibration service is not available";
    case OSTREL_BAD_FILE:
        return "the record file can't be read or is malformed";
    case OSTREL_OUT_OF_MEMORY:
        return "out of memory";
    case OSTREL_WRONG_THREAD:
        return "not on this thread: call CoInitializeEx on it first (a single-threaded "
               "apartment for a first connection), or the message thread was attached twice "
               "or detached elsewhere";
    case OSTREL_RELOAD_NEEDED:
        return "the preset's factory calibration or the object parameters failed to load: set "
               "them again before converting";
    }
    return "unknown status";
}
