#pragma once

#include <vz/api.h>

namespace vz {

// A small wide-string value: owns a copy of its text, which is never null.
class VZ_API CString {
public:
    // Implicit, so that a literal serves where a CString is expected. Null gives "".
    CString(const wchar_t* text);
    CString(const CString& other);
    CString& operator=(const CString& other);
    ~CString();

    const wchar_t* c_str() const { return mText; }

private:
    wchar_t* mText;
};

} // namespace vz
