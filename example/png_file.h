// PNG encoding of a picture.
#pragma once

#include <ostream>

#include "false_colour.h"

namespace convert {

// False when the encoder fails; the stream's state tells about writing.
bool WritePng(std::ostream& out, const Picture& picture);

} // namespace convert
