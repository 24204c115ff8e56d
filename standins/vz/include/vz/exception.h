#pragma once

#include <vz/api.h>
#include <vz/string.h>

namespace vz {

// The exception vz throws for misuse, such as an array index past the count.
class VZ_API CException {
public:
    explicit CException(const CString& message);

    const CString& Message() const { return mMessage; }

private:
    CString mMessage;
};

} // namespace vz
