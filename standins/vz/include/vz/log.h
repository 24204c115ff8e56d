#pragma once

#include <vz/api.h>
#include <vz/string.h>

#include <windows.h>

namespace vz {

// A process-wide line log. Lines go to a writer, by default standard error.
class VZ_API CLog {
public:
    using Writer = void (*)(const wchar_t* line, void* context);

    CLog();
    ~CLog();
    CLog(const CLog&) = delete;
    CLog& operator=(const CLog&) = delete;

    bool getVerbose() const;
    void setVerbose(bool verbose);

    void WriteLine(const CString& line);

    // Sends every later line to writer with context; a null writer restores standard error.
    // Once this returns, the previous writer is no longer running and is not called again.
    void SetWriter(Writer writer, void* context);

private:
    // Re-entrant, so that a writer may itself log.
    mutable CRITICAL_SECTION mLock;
    bool mVerbose;
    Writer mWriter;
    void* mContext;
};

VZ_API extern CLog* const gLog;

} // namespace vz
