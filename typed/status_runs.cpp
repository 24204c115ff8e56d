#include "status_runs.h"

#include <bit>

#include <emmintrin.h>

#include "ostrel_types.h"

namespace vz::typed {
namespace {

// The first index from `from` on whose byte is not mark; kLutSize when there is none. Sixty-four
// bytes are compared per step: the scan runs once per conversion call.
std::uint32_t NextRun(const unsigned char* status, std::uint32_t from, unsigned char mark) {
    const __m128i marks = _mm_set1_epi8(static_cast<char>(mark));
    const auto same = [&](std::uint32_t at) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(status + at));
        return _mm_cmpeq_epi8(bytes, marks);
    };
    std::uint32_t at = from;
    for (; kLutSize - at >= 64; at += 64) {
        const __m128i all = _mm_and_si128(_mm_and_si128(same(at), same(at + 16)),
                                          _mm_and_si128(same(at + 32), same(at + 48)));
        if (_mm_movemask_epi8(all) != 0xFFFF) {
            break;
        }
    }
    for (; kLutSize - at >= 16; at += 16) {
        const unsigned differ = ~static_cast<unsigned>(_mm_movemask_epi8(same(at))) & 0xFFFF;
        if (differ != 0) {
            return at + static_cast<std::uint32_t>(std::countr_zero(differ));
        }
    }
    for (; at < kLutSize && status[at] == mark; ++at) {
    }
    return at;
}

} // namespace

bool FindStatusRuns(const unsigned char* status, StatusRuns& runs) {
    std::uint32_t at = 0;
    for (std::size_t r = 0; r < StatusRuns::kCount; ++r) {
        runs.starts[r] = static_cast<std::int32_t>(at);
        runs.marks[r] = 0;
        if (at < kLutSize) {
            runs.marks[r] = status[at];
            at = NextRun(status, at, runs.marks[r]);
        }
    }
    return at == kLutSize;
}

} // namespace vz::typed
