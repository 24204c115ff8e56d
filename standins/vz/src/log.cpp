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

CLog::CLog() : m_verbose(false), m_writer(WriteToStandardError), m_context(nullptr) {
    InitializeCriticalSection(&m_lock);
}

CLog::~CLog() {
    DeleteCriticalSection(&m_lock);
}

bool CLog::getVerbose() const {
    CriticalSectionLock lock(m_lock);
    return m_verbose;
}

void CLog::setVerbose(bool verbose) {
    CriticalSectionLock lock(m_lock);
    m_verbose = verbose;
}

void CLog::WriteLine(const CString& line) {
    CriticalSectionLock lock(m_lock);
    m_writer(line.c_str(), m_context);
}

void CLog::SetWriter(Writer writer, void* context) {
    CriticalSectionLock lock(m_lock);
    m_writer = writer != nullptr ? writer : WriteToStandardError;
    m_context = writer != nullptr ? context : nullptr;
}

} // namespace vz
