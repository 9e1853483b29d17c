// Helpers shared by the fuzz targets.
#ifndef NXTM_FUZZ_SUPPORT_H
#define NXTM_FUZZ_SUPPORT_H

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace fuzz {

// An assert handler that reports nothing: the targets feed bad input on
// purpose and check what the calls return.
inline int Silent(const char*, const char*, int) {
  return 0;
}

inline void Check(bool condition) {
  if (!condition) std::abort();
}

// A heap copy of exactly `size` bytes, so that the address sanitizer sees
// any read or write past it.
struct Exact {
  Exact(const uint8_t* bytes, size_t size)
      : data(static_cast<unsigned char*>(std::malloc(size ? size : 1))), size(size) {
    if (size != 0) std::memcpy(data, bytes, size);
  }
  // `size` bytes of 0xA5, to be written over.
  explicit Exact(size_t size)
      : data(static_cast<unsigned char*>(std::malloc(size ? size : 1))), size(size) {
    if (size != 0) std::memset(data, 0xA5, size);
  }
  ~Exact() { std::free(data); }
  Exact(const Exact&) = delete;
  Exact& operator=(const Exact&) = delete;
  unsigned char* data;
  size_t size;
};

// A text of the code set, terminated in its own width (two bytes for the
// code sets above 224), in a buffer that ends at the terminator so that the
// address sanitizer sees any read past.
inline std::vector<char> Terminated(const uint8_t* bytes, size_t size, unsigned char codeSet) {
  const size_t width = codeSet > 224 ? 2 : 1;
  std::vector<char> text(bytes, bytes + (size - size % width));
  text.insert(text.end(), width, '\0');
  return text;
}

}  // namespace fuzz

#endif
