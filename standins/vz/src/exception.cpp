#include <vz/exception.h>

namespace vz {

CException::CException(const CString& message) : mMessage(message) {}

} // namespace vz
