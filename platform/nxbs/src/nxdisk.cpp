// Disk form of the plain machine types.
//
// Every function moves `count` fixed-width elements and fixes the byte order
// on the way.  Source and destination may overlap in any way (an in-place
// swap is the common case), and elements are read through memcpy or
// unaligned vector loads, which keeps unaligned records safe.
#include <nxbs/nxbs.h>

#include <cstdint>
#include <cstring>

#if defined(__x86_64__) && defined(__GNUC__)
#include <immintrin.h>
#endif

namespace {

enum class Order { LeastFirst, MostFirst, Memory };

// Only the low four bits of a format count; anything but 2 and 8 is 1.
Order OrderOf(unsigned char format) {
  switch (format & 0x0F) {
    case 2:
      return Order::MostFirst;
    case 8:
      return Order::Memory;
    default:
      return Order::LeastFirst;
  }
}

constexpr bool HostIsLittleEndian() {
#if defined(__BYTE_ORDER__) && defined(__ORDER_BIG_ENDIAN__) && \
    __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
  return false;
#else
  return true;
#endif
}

// Whether elements in `format` have their bytes reversed against memory.
bool NeedsSwap(unsigned char format) {
  switch (OrderOf(format)) {
    case Order::Memory:
      return false;
    case Order::LeastFirst:
      return !HostIsLittleEndian();
    case Order::MostFirst:
      return HostIsLittleEndian();
  }
  return false;
}

uint16_t Swap(uint16_t w) {
  return __builtin_bswap16(w);
}
uint32_t Swap(uint32_t w) {
  return __builtin_bswap32(w);
}
uint64_t Swap(uint64_t w) {
  return __builtin_bswap64(w);
}

// Copies `count` elements of `Word` from `source` to `destination` with
// their bytes reversed, one element at a time: each element is read whole
// before it is written, so `destination` may equal `source`, or lie before
// it in the same buffer.
template <typename Word>
void SwapWords(unsigned char* destination, const unsigned char* source, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    Word w;
    std::memcpy(&w, source + i * sizeof w, sizeof w);
    w = Swap(w);
    std::memcpy(destination + i * sizeof w, &w, sizeof w);
  }
}

#if defined(__x86_64__) && defined(__GNUC__)
#define NXBS_SWAP_AVX2 1

// 32 bytes at a time with one byte shuffle, on processors with AVX2 (asked
// once).  Only for buffers that are the same or don't overlap at all: a
// block is read whole before it is written, but a later block of the
// source may lie under an earlier one of the destination.
bool HaveAvx2() {
  static const bool have = [] {
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx2") != 0;
  }();
  return have;
}

// Returns the bytes done, a multiple of 32; the caller does the rest.
__attribute__((target("avx2"))) size_t SwapBlocksAvx2(unsigned char* destination,
                                                      const unsigned char* source, size_t bytes,
                                                      size_t width) {
  // Within each 16-byte lane: the byte that goes to each place.
  alignas(32) static const unsigned char kOrder[3][32] = {
      {1, 0, 3, 2, 5, 4, 7, 6, 9, 8, 11, 10, 13, 12, 15, 14,
       1, 0, 3, 2, 5, 4, 7, 6, 9, 8, 11, 10, 13, 12, 15, 14},
      {3, 2, 1, 0, 7, 6, 5, 4, 11, 10, 9, 8, 15, 14, 13, 12,
       3, 2, 1, 0, 7, 6, 5, 4, 11, 10, 9, 8, 15, 14, 13, 12},
      {7, 6, 5, 4, 3, 2, 1, 0, 15, 14, 13, 12, 11, 10, 9, 8,
       7, 6, 5, 4, 3, 2, 1, 0, 15, 14, 13, 12, 11, 10, 9, 8}};
  const __m256i order =
      _mm256_load_si256(reinterpret_cast<const __m256i*>(kOrder[width == 2   ? 0
                                                                : width == 4 ? 1
                                                                             : 2]));
  size_t i = 0;
  for (; i + 128 <= bytes; i += 128) {
    const __m256i a = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(source + i));
    const __m256i b = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(source + i + 32));
    const __m256i c = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(source + i + 64));
    const __m256i d = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(source + i + 96));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(destination + i), _mm256_shuffle_epi8(a, order));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(destination + i + 32),
                        _mm256_shuffle_epi8(b, order));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(destination + i + 64),
                        _mm256_shuffle_epi8(c, order));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(destination + i + 96),
                        _mm256_shuffle_epi8(d, order));
  }
  for (; i + 32 <= bytes; i += 32) {
    const __m256i a = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(source + i));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(destination + i), _mm256_shuffle_epi8(a, order));
  }
  return i;
}
#endif

// Copies with the bytes of each element reversed.  `destination` equals
// `source` or the two don't overlap.
void SwapCopy(unsigned char* destination, const unsigned char* source, size_t width, size_t count) {
  size_t done = 0;
#ifdef NXBS_SWAP_AVX2
  if (width * count >= 64 && HaveAvx2())
    done = SwapBlocksAvx2(destination, source, width * count, width) / width;
#endif
  destination += done * width;
  source += done * width;
  count -= done;
  switch (width) {
    case 2:
      SwapWords<uint16_t>(destination, source, count);
      break;
    case 4:
      SwapWords<uint32_t>(destination, source, count);
      break;
    case 8:
      SwapWords<uint64_t>(destination, source, count);
      break;
    default:
      for (size_t i = 0; i < count; ++i) {
        const unsigned char* from = source + i * width;
        unsigned char* to = destination + i * width;
        for (size_t low = 0, high = width - 1; low < high; ++low, --high) {
          const unsigned char keep = from[low];
          to[low] = from[high];
          to[high] = keep;
        }
      }
  }
}

uint32_t Move(void* destination, const void* source, unsigned char format, uint32_t count,
              size_t width) {
  const uint32_t total = static_cast<uint32_t>(width) * count;
  if (count == 0) return 0;
  if (destination == nullptr || source == nullptr) {
    ZENTRO_assert("destination != 0 && source != 0", __FILE__, __LINE__);
    return total;
  }
  const size_t length = width * static_cast<size_t>(count);
  unsigned char* to = static_cast<unsigned char*>(destination);
  const unsigned char* from = static_cast<const unsigned char*>(source);
  if (width == 1 || !NeedsSwap(format)) {
    if (to != from) std::memmove(to, from, length);
    return total;
  }
  // One pass when the buffers are the same or apart; a partial overlap is
  // moved first and then reversed in place.
  const uintptr_t t = reinterpret_cast<uintptr_t>(to);
  const uintptr_t f = reinterpret_cast<uintptr_t>(from);
  if (t != f && t < f + length && f < t + length) {
    std::memmove(to, from, length);
    from = to;
  }
  SwapCopy(to, from, width, count);
  return total;
}

}  // namespace

uint32_t CharStore(void* destination, const void* source, unsigned char format, uint32_t count) {
  return Move(destination, source, format, count, 1);
}

uint32_t ShortStore(void* destination, const void* source, unsigned char format, uint32_t count) {
  return Move(destination, source, format, count, 2);
}

uint32_t LongStore(void* destination, const void* source, unsigned char format, uint32_t count) {
  return Move(destination, source, format, count, 4);
}

uint32_t FloatStore(void* destination, const void* source, unsigned char format, uint32_t count) {
  return Move(destination, source, format, count, 4);
}

uint32_t DoubleStore(void* destination, const void* source, unsigned char format, uint32_t count) {
  return Move(destination, source, format, count, 8);
}

// int and unsigned are 4 bytes in memory and 4 bytes on disk in every format,
// so storing and loading are the same byte-order move.
uint32_t IntStore(void* destination, const void* source, unsigned char format, uint32_t count) {
  return Move(destination, source, format, count, 4);
}

uint32_t UnsignedStore(void* destination, const void* source, unsigned char format,
                       uint32_t count) {
  return Move(destination, source, format, count, 4);
}

uint32_t IntLoad(void* destination, const void* source, unsigned char format, uint32_t count) {
  return Move(destination, source, format, count, 4);
}

uint32_t UnsignedLoad(void* destination, const void* source, unsigned char format, uint32_t count) {
  return Move(destination, source, format, count, 4);
}

// Widths are fixed, so neither the value nor the formats change the size.
uint32_t CharSizeGet(const void*, unsigned char, unsigned char, uint32_t count) {
  return count;
}

uint32_t ShortSizeGet(const void*, unsigned char, unsigned char, uint32_t count) {
  return 2 * count;
}

uint32_t LongSizeGet(const void*, unsigned char, unsigned char, uint32_t count) {
  return 4 * count;
}

uint32_t FloatSizeGet(const void*, unsigned char, unsigned char, uint32_t count) {
  return 4 * count;
}

uint32_t DoubleSizeGet(const void*, unsigned char, unsigned char, uint32_t count) {
  return 8 * count;
}

uint32_t IntSizeGet(const void*, unsigned char, unsigned char, uint32_t count) {
  return 4 * count;
}

uint32_t CharNullSizeGet(uint32_t count) {
  return count;
}
uint32_t ShortNullSizeGet(uint32_t count) {
  return 2 * count;
}
uint32_t LongNullSizeGet(uint32_t count) {
  return 4 * count;
}
uint32_t FloatNullSizeGet(uint32_t count) {
  return 4 * count;
}
uint32_t DoubleNullSizeGet(uint32_t count) {
  return 8 * count;
}
uint32_t IntNullSizeGet(uint32_t count) {
  return 4 * count;
}
