#include "png_file.h"

// The encoder's code lives in this file only; the converter needs no file functions of its own.
#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STBI_WRITE_NO_STDIO
#include <stb_image_write.h>

namespace convert {
namespace {

void Append(void* context, void* data, int size) {
    static_cast<std::ostream*>(context)->write(static_cast<const char*>(data), size);
}

} // namespace

bool WritePng(std::ostream& out, const Picture& picture) {
    return stbi_write_png_to_func(&Append, &out, static_cast<int>(picture.width),
                                  static_cast<int>(picture.height), 3, picture.rgb.data(),
                                  static_cast<int>(picture.width * 3)) != 0;
}

} // namespace convert
