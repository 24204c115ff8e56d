#include <vz/string.h>

#include <cwchar>

namespace vz {

namespace {

wchar_t* CopyText(const wchar_t* text) {
    const std::size_t length = text == nullptr ? 0 : std::wcslen(text);
    auto* copy = new wchar_t[length + 1];
    if (length != 0) {
        std::wmemcpy(copy, text, length);
    }
    copy[length] = L'\0';
    return copy;
}

} // namespace

CString::CString(const wchar_t* text) : mText(CopyText(text)) {}

CString::CString(const CString& other) : mText(CopyText(other.mText)) {}

CString& CString::operator=(const CString& other) {
    wchar_t* copy = CopyText(other.mText);
    delete[] mText;
    mText = copy;
    return *this;
}

CString::~CString() {
    delete[] mText;
}

} // namespace vz
