// A file image in memory over caller bytes.
#include <nxbs/nxbs.h>

MemFile::MemFile() : data(nullptr), size(0), position(0) {}

MemFile::MemFile(const void* bytes, int32_t size)
    : data(static_cast<unsigned char*>(const_cast<void*>(bytes))),
      size(bytes != nullptr && size > 0 ? size : 0),
      position(0) {}

unsigned char* MemFile::Seek(int32_t offset, unsigned short origin, uint32_t* bytes,
                             unsigned short /*reserved*/) {
  if (bytes == nullptr) return nullptr;
  const uint32_t wanted = *bytes;
  *bytes = 0;

  int64_t base;
  switch (origin) {
    case FromStart:
      base = 0;
      break;
    case FromCurrent:
      base = position;
      break;
    case FromEnd:
      base = size;
      break;
    default:
      return nullptr;
  }
  // 64-bit arithmetic: base + offset cannot overflow there.
  const int64_t target = base + offset;
  if (data == nullptr || target < 0 || target > size) return nullptr;

  const uint32_t left = static_cast<uint32_t>(size - target);
  const uint32_t granted = wanted < left ? wanted : left;
  if (granted == 0) return nullptr;

  position = static_cast<int32_t>(target);
  *bytes = granted;
  return data + target;
}
