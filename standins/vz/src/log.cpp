#include <vz/log.h>

#include "critical_section_lock.h"

#include <cstdio>
#include <string>

namespace vz {

namespace {

// UTF-8, so that the line reads the same whatever the console's code page.
void WriteToStandardError(const wchar_t* line, void*) {
    std::string text;
    const int size = WideCharToMultiByte(CP_UTF8, 0, line, -1, nullptr, 0, nullptr, nullptr);
    if (size > 0) {
        text.resize(static_cast<std::size_t>(size));
        WideCharToMultiByte(CP_UTF8, 0, line, -1, text.data(), size, nullptr, nullptr);
        text.pop_back();
    }
    text.push_back('\n');
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr);
}

CLog theLog;

} // namespace

CLog* const gLog = &theLog;

CLog::CLog() : mVerbose(false), mWriter(WriteToStandardError), mContext(nullptr) {
    InitializeCriticalSection(&mLock);
}

CLog::~CLog() {
    DeleteCriticalSection(&mLock);
}

bool CLog::getVerbose() const {
    CriticalSectionLock lock(mLock);
    return mVerbose;
}

void CLog::setVerbose(bool verbose) {
    CriticalSectionLock lock(mLock);
    mVerbose = verbose;
}

void CLog::WriteLine(const CString& line) {
    CriticalSectionLock lock(mLock);
    mWriter(line.c_str(), mContext);
}

void CLog::SetWriter(Writer writer, void* context) {
    CriticalSectionLock lock(mLock);
    mWriter = writer != nullptr ? writer : WriteToStandardError;
    mContext = writer != nullptr ? context : nullptr;
}

} // namespace vz
