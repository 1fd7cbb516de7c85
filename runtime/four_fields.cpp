#include "runtime/four_fields.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstring>

#include "base/number_reading.h"
#include "base/vector_unit.h"

#if QUON5_AVX2
#include <immintrin.h>
#endif

namespace {

constexpr int kStep = 64;  // characters looked at together for the ends of fields

static_assert(FourFields::kBehind >= kStep && FourFields::kBefore >= READ_BEFORE);

}  // namespace

FourFields::FourFields(int num_channels)
    : num_channels_(num_channels), ends_(static_cast<std::size_t>(num_channels + 1 + kStep), -1) {}

#if QUON5_AVX2

namespace {

// Reads four fields; false when some are no values.
[[gnu::noinline]] bool read_one_by_one(const char* first, const std::int32_t* ends, double* row) {
    bool values = true;
    for (int lane = 0; lane < 4; ++lane) {
        const char* const begin = first + ends[lane - 1] + 1;
        const char* const end = first + ends[lane];
        values = (read_short_decimal(begin, end, row[lane]) ||
                  read_logged_value(field_text(begin, end), row[lane])) &&
                 values;
    }
    return values;
}

QUON5_VECTOR_FUNCTION inline __m128i load(const std::int32_t* four) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(four));
}

// The eight characters before each of the four ends.
QUON5_VECTOR_FUNCTION inline __m256i words_before(const char* first, const std::int32_t* ends) {
    std::int64_t words[4];
    for (int lane = 0; lane < 4; ++lane) std::memcpy(&words[lane], first + ends[lane] - 8, 8);
    return _mm256_set_epi64x(words[3], words[2], words[1], words[0]);
}

// Reads four fields into `row`. False, with `row` untouched, when one of them is irregular.
QUON5_VECTOR_FUNCTION inline bool read_four(const char* first, const std::int32_t* ends,
                                            double* row) {
    // The characters of each field, less '0', in the upper bytes of a lane; the `pad` bytes below
    // become leading zeros.
    const __m128i lengths =
        _mm_sub_epi32(_mm_sub_epi32(load(ends), load(ends - 1)), _mm_set1_epi32(1));
    const __m256i pad = _mm256_cvtepi32_epi64(_mm_sub_epi32(_mm_set1_epi32(8), lengths));
    const __m256i own = _mm256_sllv_epi64(_mm256_set1_epi8(-1), _mm256_slli_epi64(pad, 3));
    const __m256i text =
        _mm256_and_si256(_mm256_xor_si256(words_before(first, ends), _mm256_set1_epi8('0')), own);

    // A minus sign in the first byte, unless that is the last one too, becomes a leading zero.
    const __m256i last = _mm256_set1_epi64x(std::int64_t{0xff} << 56);
    const __m256i sign = _mm256_andnot_si256(_mm256_or_si256(_mm256_slli_epi64(own, 8), last),
                                             _mm256_cmpeq_epi8(text, _mm256_set1_epi8('-' ^ '0')));
    const __m256i unsigned_text = _mm256_andnot_si256(sign, text);

    // The first point, unless it is the last byte: the bytes up to it. All bytes without a point.
    const __m256i point =
        _mm256_and_si256(_mm256_cmpeq_epi8(unsigned_text, _mm256_set1_epi8('.' ^ '0')),
                         _mm256_set1_epi64x(0x0080808080808080));
    const __m256i up_to_point =
        _mm256_xor_si256(point, _mm256_sub_epi64(point, _mm256_set1_epi64x(1)));
    const __m256i decimals = _mm256_sad_epu8(_mm256_andnot_si256(up_to_point, _mm256_set1_epi8(1)),
                                             _mm256_setzero_si256());
    // The digits before the point move up into its place.
    const __m256i moving =
        _mm256_andnot_si256(_mm256_cmpeq_epi64(point, _mm256_setzero_si256()), up_to_point);
    const __m256i digits =
        _mm256_blendv_epi8(unsigned_text, _mm256_slli_epi64(unsigned_text, 8), moving);

    // Lengths from one to eight, digits from zero to nine.
    const __m256i odd_length = _mm256_or_si256(pad, _mm256_sub_epi64(_mm256_set1_epi64x(7), pad));
    const __m256i odd_digit = _mm256_adds_epu8(digits, _mm256_set1_epi8(0x7f - 9));
    if (_mm256_movemask_epi8(_mm256_or_si256(odd_length, odd_digit)) != 0) return false;

    // Eight digits to pairs, pairs to fours, fours to the number.
    const __m256i pairs = _mm256_maddubs_epi16(digits, _mm256_set1_epi16(10 | 1 << 8));
    const __m256i fours = _mm256_madd_epi16(pairs, _mm256_set1_epi32(100 | 1 << 16));
    const __m256i number = _mm256_add_epi64(_mm256_mul_epu32(fours, _mm256_set1_epi64x(10000)),
                                            _mm256_srli_epi64(fours, 32));
    const __m256d integer = _mm256_set1_pd(0x1p52);  // holds one in its lower bits
    const __m256d magnitude =
        _mm256_sub_pd(_mm256_or_pd(_mm256_castsi256_pd(number), integer), integer);
    // The upper halves of 10^0 to 10^7; the lower ones are zero.
    const __m256i powers = _mm256_setr_epi32(0x3ff00000, 0x40240000, 0x40590000, 0x408f4000,
                                             0x40c38800, 0x40f86a00, 0x412e8480, 0x416312d0);
    const __m256d power =
        _mm256_castsi256_pd(_mm256_slli_epi64(_mm256_permutevar8x32_epi32(powers, decimals), 32));
    const __m256d negative = _mm256_and_pd(
        _mm256_castsi256_pd(_mm256_sub_epi64(_mm256_setzero_si256(), sign)), _mm256_set1_pd(-0.0));
    _mm256_storeu_pd(row, _mm256_or_pd(_mm256_div_pd(magnitude, power), negative));
    return true;
}

}  // namespace

// Finds the ends of the fields. False when there are not as many as channels.
QUON5_VECTOR_FUNCTION bool FourFields::find_ends(const char* first, std::int32_t length) {
    const __m256i comma = _mm256_set1_epi8(',');
    std::int32_t* end = ends_.data() + 1;
    const std::int32_t* const last = end + num_channels_ - 1;
    for (std::int32_t at = 0; at < length; at += kStep) {
        const auto* const text = reinterpret_cast<const __m256i*>(first + at);
        const __m256i low = _mm256_cmpeq_epi8(_mm256_loadu_si256(text), comma);
        const __m256i high = _mm256_cmpeq_epi8(_mm256_loadu_si256(text + 1), comma);
        std::uint64_t commas = static_cast<std::uint32_t>(_mm256_movemask_epi8(low)) |
                               std::uint64_t{static_cast<std::uint32_t>(_mm256_movemask_epi8(high))}
                                   << 32;
        if (length - at < kStep) commas &= (std::uint64_t{1} << (length - at)) - 1;
        const int count = std::popcount(commas);
        if (count > last - end) return false;
        // Eight are stored without a branch; what is stored too much is overwritten.
        for (int stored = 0; stored < count; stored += 8) {
            for (int i = 0; i < 8; ++i) {
                end[stored + i] = at + static_cast<std::int32_t>(_tzcnt_u64(commas));
                commas = _blsr_u64(commas);
            }
        }
        end += count;
    }
    *end = length;
    return end == last;
}

QUON5_VECTOR_FUNCTION FourFields::Outcome FourFields::read(const char* first, const char* newline,
                                                           double* row) {
    constexpr std::ptrdiff_t kLongest = 1 << 30;
    if (num_channels_ < 4 || newline - first > kLongest) return NOT_READ;
    if (!find_ends(first, static_cast<std::int32_t>(newline - first))) return NOT_READ;
    bool values = true;
    for (int next = 0; next < num_channels_; next += 4) {
        // The last four overlap with others, unless the number of channels is a multiple of four.
        const int channel = std::min(next, num_channels_ - 4);
        const std::int32_t* const ends = &ends_[static_cast<std::size_t>(channel) + 1];
        if (!read_four(first, ends, row + channel)) [[unlikely]] {
            values = read_one_by_one(first, ends, row + channel) && values;
        }
    }
    return values ? READ : FLAWED;
}

QUON5_VECTOR_FUNCTION void spread_four_columns(const double* rows, int count, int num_channels,
                                               double* columns, long stride) {
    for (int next = 0; next < num_channels; next += 4) {
        const int channel = std::min(next, num_channels - 4);
        const double* row = rows + channel;
        double* to = columns + channel * stride;
        int record = 0;
        for (; record + 4 <= count; record += 4, row += 4 * num_channels, to += 4) {
            const __m256d a = _mm256_loadu_pd(row);
            const __m256d b = _mm256_loadu_pd(row + num_channels);
            const __m256d c = _mm256_loadu_pd(row + 2 * num_channels);
            const __m256d d = _mm256_loadu_pd(row + 3 * num_channels);
            const __m256d ab_even = _mm256_unpacklo_pd(a, b);
            const __m256d ab_odd = _mm256_unpackhi_pd(a, b);
            const __m256d cd_even = _mm256_unpacklo_pd(c, d);
            const __m256d cd_odd = _mm256_unpackhi_pd(c, d);
            _mm256_storeu_pd(to, _mm256_permute2f128_pd(ab_even, cd_even, 0x20));
            _mm256_storeu_pd(to + stride, _mm256_permute2f128_pd(ab_odd, cd_odd, 0x20));
            _mm256_storeu_pd(to + 2 * stride, _mm256_permute2f128_pd(ab_even, cd_even, 0x31));
            _mm256_storeu_pd(to + 3 * stride, _mm256_permute2f128_pd(ab_odd, cd_odd, 0x31));
        }
        for (; record < count; ++record, row += num_channels, ++to) {
            for (int lane = 0; lane < 4; ++lane) to[lane * stride] = row[lane];
        }
    }
}

#else

FourFields::Outcome FourFields::read(const char*, const char*, double*) {
    return NOT_READ;
}

void spread_four_columns(const double*, int, int, double*, long) {}

#endif
