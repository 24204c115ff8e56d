// Frame-sized results in the file formats the converter writes. Each writes to a stream; the
// caller checks the stream's state.
#pragma once

#include <cstdint>
#include <ostream>
#include <span>

namespace formats {

// A binary PGM of 8-bit samples, maxval at most 255.
void WritePgm(std::ostream& out, std::uint32_t width, std::uint32_t height,
              std::span<const std::uint8_t> samples, unsigned maxval);
// A binary PGM of 16-bit samples (maxval 65535), big-endian as the format has them.
void WritePgm(std::ostream& out, std::uint32_t width, std::uint32_t height,
              std::span<const std::uint16_t> samples);
// A grayscale PFM ("Pf"), little-endian (scale -1.0); rows from the bottom of the image up, as
// the format stores them.
void WritePfm(std::ostream& out, std::uint32_t width, std::uint32_t height,
              std::span<const float> values);
// One line per image row, values separated by commas, each as short as reads back exactly.
void WriteCsv(std::ostream& out, std::uint32_t width, std::uint32_t height,
              std::span<const float> values);

} // namespace formats
