#include <vz/exception.h>

namespace vz {

CException::CException(const CString& message) : m_message(message) {}

} // namespace vz
