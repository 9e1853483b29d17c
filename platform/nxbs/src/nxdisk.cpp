// Disk form of the plain machine types.
//
// Every function moves `count` fixed-width elements and fixes the byte order
// on the way.  The move is done with memmove first and the byte order is then
// corrected in the destination, so source and destination may overlap in any
// way (an in-place swap is the common case) and no pointer is ever read as a
// wider type, which keeps unaligned records safe.
#include <nxbs/nxbs.h>

#include <cstring>

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

// Reverses the bytes of each element in place, a whole element at a time.
template <typename Word, Word (*Swap)(Word)>
void ReverseWords(unsigned char* bytes, uint32_t count) {
  for (uint32_t i = 0; i < count; ++i, bytes += sizeof(Word)) {
    Word w;
    std::memcpy(&w, bytes, sizeof w);
    w = Swap(w);
    std::memcpy(bytes, &w, sizeof w);
  }
}

uint16_t Swap16(uint16_t w) {
  return __builtin_bswap16(w);
}
uint32_t Swap32(uint32_t w) {
  return __builtin_bswap32(w);
}
uint64_t Swap64(uint64_t w) {
  return __builtin_bswap64(w);
}

void ReverseEach(unsigned char* bytes, size_t width, uint32_t count) {
  switch (width) {
    case 2:
      ReverseWords<uint16_t, Swap16>(bytes, count);
      break;
    case 4:
      ReverseWords<uint32_t, Swap32>(bytes, count);
      break;
    case 8:
      ReverseWords<uint64_t, Swap64>(bytes, count);
      break;
    default:
      for (uint32_t i = 0; i < count; ++i, bytes += width) {
        for (size_t low = 0, high = width - 1; low < high; ++low, --high) {
          const unsigned char keep = bytes[low];
          bytes[low] = bytes[high];
          bytes[high] = keep;
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
  if (destination != source) std::memmove(destination, source, length);
  if (width > 1 && NeedsSwap(format)) {
    ReverseEach(static_cast<unsigned char*>(destination), width, count);
  }
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
