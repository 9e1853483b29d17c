// Slot functions that the rows of class types share: arrays with a hidden
// element count, element loops, the translation scheme of rows with a fixed
// disk length, conversion to and from text, and 16-bit fields in the byte
// order of a format.  Not installed.
#ifndef NXTM_SRC_NXCLASSROWS_H
#define NXTM_SRC_NXCLASSROWS_H

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <type_traits>

#include "nxrows.h"

namespace nxrows {

// 16-bit fields in the byte order of a format: 2 most significant byte
// first, any other low value least significant byte first.
inline uint32_t Get16(const unsigned char* at, unsigned char format) {
  return (format & 0x0F) == 2 ? (uint32_t{at[0]} << 8) | at[1] : at[0] | (uint32_t{at[1]} << 8);
}
inline void Put16(unsigned char* at, uint32_t value, unsigned char format) {
  if ((format & 0x0F) == 2) {
    at[0] = static_cast<unsigned char>(value >> 8);
    at[1] = static_cast<unsigned char>(value);
  } else {
    at[0] = static_cast<unsigned char>(value);
    at[1] = static_cast<unsigned char>(value >> 8);
  }
}

// A buffer from malloc; the memory handler is called until one comes (it
// throws when no memory is left).  0 bytes asks for 1.
inline void* MallocOrHandle(size_t bytes) {
  if (bytes == 0) bytes = 1;
  void* memory = std::malloc(bytes);
  while (memory == nullptr) {
    NxCallMemoryHandler(static_cast<uint32_t>(bytes));
    memory = std::malloc(bytes);
  }
  return memory;
}

// ---------------------------------------------------------------------------
// Arrays of constructed objects.  A block holds `Header` bytes in front of
// element 0, the hidden 32-bit element count in the last four of them, and
// the elements, each default-constructed; null when no memory is left.

template <class T, size_t Header>
T* ObjectBlockCreate(uint32_t count) {
  void* block = std::malloc(Header + static_cast<size_t>(count) * sizeof(T));
  if (block == nullptr) return nullptr;
  std::memcpy(static_cast<char*>(block) + Header - 4, &count, 4);
  T* objects = reinterpret_cast<T*>(static_cast<char*>(block) + Header);
  for (uint32_t i = 0; i < count; ++i) new (&objects[i]) T();
  return objects;
}

// Destroys as many elements as the hidden count says, last first, and frees
// the block.
template <class T, size_t Header>
void ObjectBlockDelete(T* objects) {
  if constexpr (!std::is_trivially_destructible<T>::value) {
    uint32_t stored;
    std::memcpy(&stored, reinterpret_cast<char*>(objects) - 4, 4);
    for (uint32_t i = stored; i-- > 0;) objects[i].~T();
  }
  std::free(reinterpret_cast<char*>(objects) - Header);
}

// Create and Delete of a row: `count` 0 or 1 is one object of its own (new
// and delete), from 2 up a block.
template <class T, size_t Header = kArrayHeader>
void* ObjectArrayCreate(uint32_t count) {
  if (count < 2) return new (std::nothrow) T();
  return ObjectBlockCreate<T, Header>(count);
}

template <class T, size_t Header = kArrayHeader>
void* ObjectArrayDelete(void* value, uint32_t count) {
  if (value == nullptr) return nullptr;
  if (count < 2)
    delete static_cast<T*>(value);
  else
    ObjectBlockDelete<T, Header>(static_cast<T*>(value));
  return nullptr;
}

// Create and Delete of the rows whose elements come zeroed and need no
// destruction (see ClassArrayCreate).
template <class T>
void* ZeroArrayCreate(uint32_t count) {
  return ClassArrayCreate(count, sizeof(T), ClassArrayHeader<T>());
}

template <class T>
void* ZeroArrayDelete(void* value, uint32_t count) {
  ClassArrayDelete(value, count, ClassArrayHeader<T>());
  return nullptr;
}

// The size slots of the rows whose elements have `DiskLength` bytes on disk
// in every format.
template <uint32_t DiskLength>
uint32_t FixedNullSizeGet(uint32_t count) {
  return count * DiskLength;
}
template <uint32_t DiskLength>
uint32_t FixedSizeGet(const void*, unsigned char, unsigned char, uint32_t count) {
  return count * DiskLength;
}
template <uint32_t DiskLength>
uint32_t FixedSizeGetFromMemFile(MemFile*, unsigned char, uint32_t count) {
  return count * DiskLength;
}

// ---------------------------------------------------------------------------
// Element loops.  Assignment and Copy take element 0 of the source for every
// element when `broadcast` is set; Copy constructs into raw memory.

template <class T>
void ElementConstructor(void* memory, uint32_t count, uint32_t) {
  if (memory == nullptr) return;
  T* elements = static_cast<T*>(memory);
  for (uint32_t i = 0; i < count; ++i) new (&elements[i]) T();
}

template <class T>
void ElementDestructor(void* memory, uint32_t count, uint32_t) {
  if (memory == nullptr) return;
  T* elements = static_cast<T*>(memory);
  for (uint32_t i = 0; i < count; ++i) elements[i].~T();
}

template <class T>
void ElementAssignment(void* destination, void* source, uint32_t count, int broadcast) {
  T* d = static_cast<T*>(destination);
  const T* s = static_cast<const T*>(source);
  for (uint32_t i = 0; i < count; ++i) d[i] = broadcast ? s[0] : s[i];
}

template <class T>
void ElementCopy(void* destination, void* source, uint32_t count, int broadcast) {
  T* d = static_cast<T*>(destination);
  const T* s = static_cast<const T*>(source);
  for (uint32_t i = 0; i < count; ++i) new (&d[i]) T(broadcast ? s[0] : s[i]);
}

// The Constructor of rows whose new elements are all zero bytes.
template <size_t Size>
void ZeroConstructor(void* memory, uint32_t count, uint32_t) {
  if (memory != nullptr) std::memset(memory, 0, static_cast<size_t>(count) * Size);
}

// The Destructor of rows whose elements own nothing.
inline void NoDestructor(void*, uint32_t, uint32_t) {}

// ---------------------------------------------------------------------------
// Translate of the rows whose disk form Store writes and Load reads: memory
// to memory by `MemoryToMemory` (which returns the bytes it gives), memory
// and disk through Load and Store in the byte order of the format's low four
// bits, disk to disk as a byte copy.

template <size_t Size>
uint32_t MoveBytes(void* destination, void* source, uint32_t count) {
  const size_t bytes = static_cast<size_t>(count) * Size;
  if (bytes != 0) std::memmove(destination, source, bytes);
  return static_cast<uint32_t>(bytes);
}

template <NxAssignmentFunc Assign, uint32_t Size>
uint32_t AssignEach(void* destination, void* source, uint32_t count) {
  Assign(destination, source, count, 0);
  return count * Size;
}

template <NxLoadFunc Load, NxStoreFunc Store, uint32_t (*MemoryToMemory)(void*, void*, uint32_t)>
uint32_t RecordTranslate(void* destination, unsigned char destinationFormat,
                         uint32_t destinationSize, void* source, unsigned char sourceFormat,
                         uint32_t sourceSize, uint32_t count) {
  destinationFormat &= 0x0F;
  const bool destinationInMemory = (destinationFormat & 8) != 0;
  const bool sourceInMemory = (sourceFormat & 8) != 0;
  if (destinationInMemory && sourceInMemory) return MemoryToMemory(destination, source, count);
  if (destinationInMemory) return Load(destination, source, sourceFormat, count);
  if (sourceInMemory) return Store(destination, source, destinationFormat, count);
  return DiskToDiskCopy(destination, destinationSize, source, sourceSize);
}

// ---------------------------------------------------------------------------
// Conversion to and from text.

// ConvertTo: `count` new strings from `create`, string i filled by
// `fill`(string, i), handed over in a carrier; null when memory is short.
template <class Fill>
NxTypeConvertData* ToStrings(NxCreateFunc create, NxDeleteFunc destroy, uint32_t count,
                             Fill fill) {
  NxString* strings = static_cast<NxString*>(create(count));
  if (strings == nullptr) return nullptr;
  for (uint32_t i = 0; i < count; ++i) fill(strings[i], i);
  NxTypeConvertData* data = NxTypeConvertData::Make(NxTYPE_NxString, count, strings, nullptr);
  if (data == nullptr) destroy(strings, count);
  return data;
}

// The 8-bit text that a scan reads: 16-bit text through a copy recoded into
// the default 8-bit code set, 8-bit text as it stands.
class EightBitText {
 public:
  explicit EightBitText(const NxString& source) : text_(&source) {
    if (source.codeSet > 224) {
      copy_ += source;
      text_ = &copy_;
    }
  }
  EightBitText(const EightBitText&) = delete;
  EightBitText& operator=(const EightBitText&) = delete;

  const char* c_str() const { return text_->StrGet(); }
  size_t length() const { return text_->Len(); }

 private:
  NxString copy_{NxString::GetDefault8CodeSet(), NxString::GetDefaultLanguage()};
  const NxString* text_;
};

// atol as with a 32-bit long: decimal, out-of-range values saturate at the
// 32-bit limits; a null text reads as 0.
inline int32_t Atol32(const char* text) {
  if (text == nullptr) return 0;
  const long long value = std::strtoll(text, nullptr, 10);
  if (value > INT32_MAX) return INT32_MAX;
  if (value < INT32_MIN) return INT32_MIN;
  return static_cast<int32_t>(value);
}

// The string that `data` holds for element `i`, or null when it has none or
// a null one.
inline NxString* GivenString(NxTypeConvertData* data, uint32_t i) {
  NxString* s = data != nullptr ? data->GetString(static_cast<int>(i)) : nullptr;
  return s != nullptr && !s->IsNullValue() ? s : nullptr;
}

// ConvertFrom: `created` holds `count` new elements; element i is given to
// `read`(element, string) with the string of GivenString.
template <class T, class Read>
void* FromStrings(void* created, NxTypeConvertData* data, uint32_t count, Read read) {
  T* result = static_cast<T*>(created);
  if (result == nullptr || count == 0) return result;
  for (uint32_t i = 0; i < count; ++i) read(result[i], GivenString(data, i));
  return result;
}

// The default of a row with a null value: `count` new elements by `create`,
// each set null; otherwise what `convertFrom` makes of empty strings.
template <class T, class SetNull>
void* NullOrEmptyDefault(NxCreateFunc create, NxConvertFromFunc convertFrom, uint32_t count,
                         int null, SetNull setNull) {
  if (null == 0) return DefaultFromEmptyStrings(convertFrom, count);
  T* result = static_cast<T*>(create(count));
  if (result == nullptr) return nullptr;
  for (uint32_t i = 0; i < count; ++i) setNull(result[i]);
  return result;
}

}  // namespace nxrows

#endif
