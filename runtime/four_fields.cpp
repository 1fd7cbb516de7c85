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

constexpr int kDigits = 8;
constexpr int kMaxDecimals = 7;
constexpr int kStep = 64;  // characters looked at together for the ends of fields

static_assert(FourFields::kBehind >= kStep && FourFields::kBefore >= READ_BEFORE);

}  // namespace

FourFields::FourFields(int num_channels)
    : num_channels_(num_channels),
      columns_(static_cast<std::size_t>(num_channels + 3) / 4),
      ends_(static_cast<std::size_t>(num_channels + 1 + kStep), -1) {
    for (Columns& columns : columns_) {
        for (int lane = 0; lane < 4; ++lane) set_decimals(columns, lane, 0);
    }
}

void FourFields::set_decimals(Columns& columns, int lane, int decimals) {
    constexpr std::uint8_t kNothing = 0x80;  // gives a zero
    constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7};
    static constexpr int kPlaces[] = {0, 2, 1, 3};
    std::uint8_t* const source = columns.source[kPlaces[lane]];
    const int point = decimals > 0 ? 1 : 0;
    for (int place = 0; place < kDigits; ++place) {  // from the last digit
        const int before_end = place < decimals ? place : place + point;
        source[kDigits - 1 - place] = static_cast<std::uint8_t>(kBefore - 1 - before_end);
    }
    std::fill_n(source + kDigits, kDigits, kNothing);
    if (point != 0) source[kDigits] = static_cast<std::uint8_t>(kBefore - 1 - decimals);
    columns.divisor[lane] = kPowersOfTen[decimals];
    columns.point[lane] = point != 0 ? '.' : 0;
    columns.most_pad[lane] = static_cast<std::uint64_t>(kDigits - 1 - decimals);
    columns.room[lane] = kDigits + point + 1;
}

// Reads four fields, and returns how many of them are no values.
int FourFields::read_one_by_one(Columns& columns, const char* first, const std::int32_t* ends,
                                double* row) {
    int flaws = 0;
    for (int lane = 0; lane < 4; ++lane) {
        const char* const begin = first + ends[lane - 1] + 1;
        const char* const end = first + ends[lane];
        if (read_short_decimal(begin, end, row[lane])) {
            const char* const point = std::find(begin, end, '.');
            const auto decimals = point == end ? 0 : static_cast<int>(end - point) - 1;
            if (decimals <= kMaxDecimals) set_decimals(columns, lane, decimals);
        } else if (!read_logged_value(field_text(begin, end), row[lane])) {
            ++flaws;
        }
    }
    return flaws;
}

#if QUON5_AVX2

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

    const __m256i zeros = _mm256_set1_epi8('0');
    const __m256i minus = _mm256_set1_epi8('-' ^ '0');
    const __m256i last_digit = _mm256_set1_epi64x(std::int64_t{0xff} << 56);
    const __m256i ones = _mm256_set1_epi8(-1);
    const __m256i above_nine = _mm256_set1_epi8(0x7f - 9);
    const __m256i above_zero = _mm256_set1_epi8(0x7f);
    const __m256i pairs = _mm256_set1_epi16(10 | 1 << 8);
    const __m256i fours = _mm256_set1_epi32(100 | 1 << 16);
    const __m256i high_four = _mm256_set1_epi64x(10000);
    const __m256d integer = _mm256_set1_pd(0x1p52);  // with an integer in its lower bits
    const __m256d sign_bit = _mm256_set1_pd(-0.0);

    int flaws = 0;
    Columns* columns = columns_.data();
    for (int next = 0; next < num_channels_; next += 4, ++columns) {
        const int channel = std::min(next, num_channels_ - 4);
        const std::int32_t* const ends = &ends_[static_cast<std::size_t>(channel) + 1];
        const auto before = [&](int lane) {
            return reinterpret_cast<const __m128i*>(first + ends[lane] - kBefore);
        };
        const auto* const source = reinterpret_cast<const __m256i*>(columns->source);
        const __m256i even = _mm256_shuffle_epi8(_mm256_loadu2_m128i(before(2), before(0)),
                                                 _mm256_loadu_si256(source));
        const __m256i odd = _mm256_shuffle_epi8(_mm256_loadu2_m128i(before(3), before(1)),
                                                _mm256_loadu_si256(source + 1));
        // How many of the eight digits are missing: bytes that belong to other fields.
        const __m128i pad32 = _mm_sub_epi32(
            _mm_add_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(columns->room)),
                          _mm_loadu_si128(reinterpret_cast<const __m128i*>(ends - 1))),
            _mm_loadu_si128(reinterpret_cast<const __m128i*>(ends)));
        const __m256i pad = _mm256_cvtepi32_epi64(pad32);
        const __m256i own = _mm256_sllv_epi64(ones, _mm256_slli_epi64(pad, 3));
        __m256i digits =
            _mm256_and_si256(_mm256_xor_si256(_mm256_unpacklo_epi64(even, odd), zeros), own);
        // A minus sign in the first byte, unless this is the last one too, becomes a leading zero.
        const __m256i not_first = _mm256_or_si256(_mm256_slli_epi64(own, 8), last_digit);
        const __m256i sign = _mm256_andnot_si256(not_first, _mm256_cmpeq_epi8(digits, minus));
        digits = _mm256_andnot_si256(sign, digits);

        const __m256i point =
            _mm256_xor_si256(_mm256_unpackhi_epi64(even, odd),
                             _mm256_loadu_si256(reinterpret_cast<const __m256i*>(columns->point)));
        const __m256i most_pad =
            _mm256_loadu_si256(reinterpret_cast<const __m256i*>(columns->most_pad));
        const __m256i odd_digit = _mm256_adds_epu8(digits, above_nine);
        const __m256i odd_point = _mm256_adds_epu8(point, above_zero);
        const __m256i odd_length = _mm256_or_si256(pad, _mm256_sub_epi64(most_pad, pad));
        const __m256i irregular =
            _mm256_or_si256(odd_length, _mm256_or_si256(odd_digit, odd_point));
        if (_mm256_movemask_epi8(irregular) != 0) [[unlikely]] {
            flaws += read_one_by_one(*columns, first, ends, row + channel);
            continue;
        }

        // Eight digits to pairs, pairs to fours, fours to the number.
        const __m256i four = _mm256_madd_epi16(_mm256_maddubs_epi16(digits, pairs), fours);
        const __m256i number =
            _mm256_add_epi64(_mm256_mul_epu32(four, high_four), _mm256_srli_epi64(four, 32));
        const __m256d magnitude =
            _mm256_sub_pd(_mm256_or_pd(_mm256_castsi256_pd(number), integer), integer);
        const __m256d negative = _mm256_and_pd(
            _mm256_castsi256_pd(_mm256_sub_epi64(_mm256_setzero_si256(), sign)), sign_bit);
        const __m256d quotient = _mm256_div_pd(magnitude, _mm256_loadu_pd(columns->divisor));
        _mm256_storeu_pd(row + channel, _mm256_or_pd(quotient, negative));
    }
    return flaws == 0 ? READ : FLAWED;
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

void spread_four_columns(const double*, int, int, double*, long) {}

FourFields::Outcome FourFields::read(const char*, const char*, double*) {
    return NOT_READ;
}

#endif
