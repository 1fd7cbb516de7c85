#include "quon5/composite/four_numbers.h"

#include <cstring>

#include "base/vector_unit.h"
#include "quon5/composite/number_format.h"

#if QUON5_AVX2
#include <immintrin.h>
#endif

namespace {

constexpr int kMaxDecimals = 6;  // with point and comma they are a word

char* write_one_by_one(char* out, const FourColumns& columns, int record) {
    for (int lane = 0; lane < 4; ++lane) {
        out = write_fixed(out, columns.values[lane][record], columns.decimals[lane]);
        *out++ = ',';
    }
    return out;
}

}  // namespace

void FourColumns::set(int lane, const double* column, int digits) {
    constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6};
    values[lane] = column;
    decimals[lane] = digits;
    scale[lane] = 1.0;
    limit[lane] = 0.0;
    if (digits < 0 || digits > kMaxDecimals) return;
    const int point = digits > 0 ? 1 : 0;
    scale[lane] = kPowersOfTen[digits];
    limit[lane] = point != 0 ? 99999999.0 : 9999999.0;
    frame[lane] = std::uint64_t{','} << 8 * (digits + point) | (point != 0 ? '.' : 0);
    places[lane] = static_cast<std::uint8_t>(8 * digits);
    behind[lane] = static_cast<std::uint8_t>(digits + point + 1);
}

#if QUON5_AVX2

namespace {

QUON5_VECTOR_FUNCTION inline __m256i load(const void* four) {
    return _mm256_loadu_si256(static_cast<const __m256i*>(four));
}

QUON5_VECTOR_FUNCTION inline __m256i widened(const std::uint8_t* four) {
    std::int32_t bytes = 0;
    std::memcpy(&bytes, four, sizeof bytes);
    return _mm256_cvtepu8_epi64(_mm_cvtsi32_si128(bytes));
}

QUON5_VECTOR_FUNCTION inline void store(std::int64_t* four, __m256i values) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(four), values);
}

QUON5_VECTOR_FUNCTION inline void put_low(char* out, __m128d words) {
    const double word = _mm_cvtsd_f64(words);
    std::memcpy(out, &word, sizeof word);
}

QUON5_VECTOR_FUNCTION inline void put_high(char* out, __m128d words) {
    put_low(out, _mm_unpackhi_pd(words, words));
}

// The eight digits of each number below 10^8, the first one in the lowest byte. The upper half of
// `numbers` does not count.
QUON5_VECTOR_FUNCTION inline __m256i digits_of(__m256i numbers) {
    // The factors are reciprocals, a little too large: exact for all numbers that come.
    const __m256i high = _mm256_srli_epi64(
        _mm256_mul_epu32(numbers, _mm256_set1_epi64x(0xd1b71759)), 45);  // numbers / 10000
    const __m256i low =
        _mm256_sub_epi64(numbers, _mm256_mul_epu32(high, _mm256_set1_epi64x(10000)));
    const __m256i fours = _mm256_or_si256(high, _mm256_slli_epi64(low, 32));
    const __m256i hundreds =
        _mm256_srli_epi16(_mm256_mulhi_epu16(fours, _mm256_set1_epi16(5243)), 3);  // fours / 100
    const __m256i rest =
        _mm256_sub_epi16(fours, _mm256_madd_epi16(hundreds, _mm256_set1_epi32(100)));
    const __m256i pairs = _mm256_or_si256(hundreds, _mm256_slli_epi32(rest, 16));
    const __m256i tens =
        _mm256_srli_epi16(_mm256_mullo_epi16(pairs, _mm256_set1_epi16(103)), 10);  // pairs / 10
    const __m256i ones = _mm256_sub_epi16(pairs, _mm256_maddubs_epi16(tens, _mm256_set1_epi16(10)));
    return _mm256_or_si256(tens, _mm256_slli_epi16(ones, 8));
}

}  // namespace

QUON5_VECTOR_FUNCTION char* write_four_columns(char* out, const FourColumns* first,
                                               const FourColumns* end, int record) {
    const __m256d sign_bit = _mm256_set1_pd(-0.0);
    const __m256d integer = _mm256_set1_pd(0x1p52);  // holds one in its lower bits
    const __m256d half = _mm256_set1_pd(0.5);
    const __m256i cuttable = _mm256_set1_epi64x((std::int64_t{1} << 56) - 1);
    const __m256i eight_bits = _mm256_set1_epi8(8);
    const __m256i zeros = _mm256_set1_epi8('0');
    const __m256i minus = _mm256_set1_epi64x('-');
    for (const FourColumns* columns = first; columns != end; ++columns) {
        const double* const* const values = columns->values;
        const __m256d value = _mm256_set_pd(values[3][record], values[2][record], values[1][record],
                                            values[0][record]);
        const __m256d scaled = _mm256_mul_pd(value, _mm256_loadu_pd(columns->scale));
        const __m256d product = _mm256_andnot_pd(sign_bit, scaled);
        const __m256d shifted = _mm256_add_pd(product, integer);
        const __m256d distance =
            _mm256_andnot_pd(sign_bit, _mm256_sub_pd(product, _mm256_sub_pd(shifted, integer)));
        const __m256d regular =
            _mm256_and_pd(_mm256_cmp_pd(distance, half, _CMP_LT_OQ),
                          _mm256_cmp_pd(product, _mm256_loadu_pd(columns->limit), _CMP_LT_OQ));
        if (_mm256_movemask_pd(regular) != 0xf) [[unlikely]] {
            out = write_one_by_one(out, *columns, record);
            continue;
        }

        const __m256i digits = digits_of(_mm256_castpd_si256(shifted));
        const __m256i places = widened(columns->places);
        const __m256i whole = _mm256_sub_epi64(_mm256_set1_epi64x(64), places);
        // Adding 1 carries through the leading zeros, up to the first other digit.
        const __m256i zero_digits = _mm256_and_si256(
            _mm256_cmpeq_epi8(digits, _mm256_setzero_si256()), _mm256_srlv_epi64(cuttable, places));
        const __m256i leading =
            _mm256_andnot_si256(_mm256_add_epi64(zero_digits, _mm256_set1_epi64x(1)), zero_digits);
        const __m256i leading_bits =
            _mm256_sad_epu8(_mm256_and_si256(leading, eight_bits), _mm256_setzero_si256());
        const __m256i text = _mm256_or_si256(digits, zeros);
        const __m256i positive = _mm256_srlv_epi64(text, leading_bits);
        const __m256i negative = _mm256_or_si256(_mm256_slli_epi64(positive, 8), minus);
        const __m256d begin =
            _mm256_blendv_pd(_mm256_castsi256_pd(positive), _mm256_castsi256_pd(negative), value);
        const __m256i decimals = _mm256_slli_epi64(_mm256_srlv_epi64(text, whole), 8);
        const __m256d behind = _mm256_castsi256_pd(_mm256_or_si256(decimals, load(columns->frame)));
        // Before the point: all digits but decimals and leading zeros, and a minus sign.
        const __m256i minus_signs = _mm256_srli_epi64(_mm256_castpd_si256(value), 63);
        std::int64_t points[4];
        store(points, _mm256_add_epi64(_mm256_srli_epi64(_mm256_sub_epi64(whole, leading_bits), 3),
                                       minus_signs));
        const __m128d begins[] = {_mm256_castpd256_pd128(begin), _mm256_extractf128_pd(begin, 1)};
        const __m128d ends[] = {_mm256_castpd256_pd128(behind), _mm256_extractf128_pd(behind, 1)};
        for (int i = 0; i < 2; ++i) {
            put_low(out, begins[i]);
            out += points[2 * i];
            put_low(out, ends[i]);
            out += columns->behind[2 * i];
            put_high(out, begins[i]);
            out += points[2 * i + 1];
            put_high(out, ends[i]);
            out += columns->behind[2 * i + 1];
        }
    }
    return out;
}

#else

char* write_four_columns(char* out, const FourColumns* first, const FourColumns* end, int record) {
    for (; first != end; ++first) out = write_one_by_one(out, *first, record);
    return out;
}

#endif
