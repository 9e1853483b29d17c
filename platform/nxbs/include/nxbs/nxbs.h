// nxbs: the base library of the nxtm family.
//
// Disk form of the plain machine types, the in-memory file image, the
// process configuration, assertion and out-of-memory reporting, the version
// check and the clock.  Every width here is fixed: a "long" of the on-disk
// world is 32 bits, whatever the compiler's long is.
#ifndef NXBS_NXBS_H
#define NXBS_NXBS_H

#include <cstddef>
#include <cstdint>

#if defined(_WIN32)
#if defined(NXBS_BUILDING)
#define NXBS_API __declspec(dllexport)
#else
#define NXBS_API __declspec(dllimport)
#endif
#else
#define NXBS_API __attribute__((visibility("default")))
#endif

// ---------------------------------------------------------------------------
// Version of the base library itself.
enum : uint32_t {
  NxBS_VERSION_MAJOR = 9,
  NxBS_VERSION_MINOR = 5,
  NxBS_VERSION_BUILD = 16,
};

// Result codes of CheckNxVersionNumber.
enum : int {
  NxVERSION_OK = 0,
  NxVERSION_MAJOR_MISMATCH = -1,
  NxVERSION_MINOR_MISMATCH = -2,
  NxVERSION_BUILD_MISMATCH = -3,
  NxVERSION_BAD_FLAGS = -4,
};

// Flags of CheckNxVersionNumber.  Callers always set the two low bits.
enum : int {
  NxVERSION_FLAG_CALLER = 0x3,  // always set by callers
  NxVERSION_FLAG_BUILD = 0x4,   // also require the build number to match
};

// ---------------------------------------------------------------------------
// Date and time records of the clock.  Callers zero them before a call.
struct bdate {
  int16_t year;
  uint8_t month;  // 1 to 12
  uint8_t day;    // 1 to 31
};

struct btime {
  uint8_t hour;
  uint8_t minute;
  uint8_t second;
  uint8_t reserved;  // not read
  int32_t zone;      // offset of the time from UTC in seconds
};

// ---------------------------------------------------------------------------
// Disk form of scalars.  The low four bits of `format` choose the byte order:
// 1 least significant byte first, 2 most significant byte first, 8 the memory
// form (bytes as they stand).  Every other low value behaves as 1.  Higher
// bits are ignored.  Each function returns the disk bytes of `count`
// elements.  The five plain functions are their own inverse: the same call
// moves bytes from disk to memory and from memory to disk.
NXBS_API uint32_t CharStore(void* destination, const void* source, unsigned char format,
                            uint32_t count);
NXBS_API uint32_t ShortStore(void* destination, const void* source, unsigned char format,
                             uint32_t count);
NXBS_API uint32_t LongStore(void* destination, const void* source, unsigned char format,
                            uint32_t count);
NXBS_API uint32_t FloatStore(void* destination, const void* source, unsigned char format,
                             uint32_t count);
NXBS_API uint32_t DoubleStore(void* destination, const void* source, unsigned char format,
                              uint32_t count);
// int and unsigned: 4-byte memory elements, 4 disk bytes in every format.
NXBS_API uint32_t IntStore(void* destination, const void* source, unsigned char format,
                           uint32_t count);
NXBS_API uint32_t UnsignedStore(void* destination, const void* source, unsigned char format,
                                uint32_t count);
NXBS_API uint32_t IntLoad(void* destination, const void* source, unsigned char format,
                          uint32_t count);
NXBS_API uint32_t UnsignedLoad(void* destination, const void* source, unsigned char format,
                               uint32_t count);

// Disk bytes of `count` elements; `value` is never read (fixed widths).
NXBS_API uint32_t CharSizeGet(const void* value, unsigned char valueFormat,
                              unsigned char diskFormat, uint32_t count);
NXBS_API uint32_t ShortSizeGet(const void* value, unsigned char valueFormat,
                               unsigned char diskFormat, uint32_t count);
NXBS_API uint32_t LongSizeGet(const void* value, unsigned char valueFormat,
                              unsigned char diskFormat, uint32_t count);
NXBS_API uint32_t FloatSizeGet(const void* value, unsigned char valueFormat,
                               unsigned char diskFormat, uint32_t count);
NXBS_API uint32_t DoubleSizeGet(const void* value, unsigned char valueFormat,
                                unsigned char diskFormat, uint32_t count);
NXBS_API uint32_t IntSizeGet(const void* value, unsigned char valueFormat, unsigned char diskFormat,
                             uint32_t count);

NXBS_API uint32_t CharNullSizeGet(uint32_t count);
NXBS_API uint32_t ShortNullSizeGet(uint32_t count);
NXBS_API uint32_t LongNullSizeGet(uint32_t count);
NXBS_API uint32_t FloatNullSizeGet(uint32_t count);
NXBS_API uint32_t DoubleNullSizeGet(uint32_t count);
NXBS_API uint32_t IntNullSizeGet(uint32_t count);

// ---------------------------------------------------------------------------
// A file image in memory.  `size` and `position` are public so that readers
// can check whether a record still lies inside the image.
class NXBS_API MemFile {
 public:
  // Seek origins.
  enum : unsigned short { FromStart = 0, FromCurrent = 1, FromEnd = 2 };

  MemFile();
  // An image over caller bytes; the caller keeps them alive and owns them.
  MemFile(const void* bytes, int32_t size);

  // Moves the position to `origin` + `offset` and returns the address of the
  // bytes there.  `*bytes` holds the number wanted and comes back as the
  // number granted (what is left up to the end, at most the number wanted).
  // Null, with `*bytes` 0, when the new position lies outside the image or
  // nothing is left there; the position is then unchanged.  Seek does not
  // advance past the bytes it grants.
  unsigned char* Seek(int32_t offset, unsigned short origin, uint32_t* bytes,
                      unsigned short reserved);

  unsigned char* data;  // first byte of the image
  int32_t size;         // total bytes
  int32_t position;     // current position, 0 to size
};

// ---------------------------------------------------------------------------
// Configuration.  The first virtual operation reads a key's raw text; the
// second answers whether a key is set, or holds one of a list of words.
class NXBS_API NxConfig {
 public:
  virtual ~NxConfig();
  // The text of `key`, or null when the key is not set.
  virtual const char* Value(const char* key) const = 0;
  // Writes a non-zero value to the 16-bit `flag` when `key` holds one of the
  // null-ended `words` (compared without regard to ASCII case), or, with a
  // null `words`, when `key` is set to anything but "0".  `flag` is left
  // alone otherwise.
  // Returns 0 when the key is set, 1 when it is not.
  virtual int Query(const char* key, void* flag, const char** words) const;
};

// A ready configuration: keys and values that an application fills.
class NXBS_API NxKeyValueConfig : public NxConfig {
 public:
  NxKeyValueConfig();
  ~NxKeyValueConfig() override;
  NxKeyValueConfig(const NxKeyValueConfig&) = delete;
  NxKeyValueConfig& operator=(const NxKeyValueConfig&) = delete;

  const char* Value(const char* key) const override;
  // Sets `key` to `value`; a null `value` removes the key.
  void Set(const char* key, const char* value);
  void Remove(const char* key);
  void Clear();
  // Reads "key=value" lines; blank lines and lines starting with '#' are
  // skipped, blanks around keys and values are dropped.  Returns the number
  // of keys set.
  int Parse(const char* text);

 private:
  struct Impl;
  Impl* impl_;
};

// The pointer that asks DefaultConfig for the current configuration.
#define NxCONFIG_QUERY (reinterpret_cast<NxConfig*>(~static_cast<uintptr_t>(0)))

// DefaultConfig(NxCONFIG_QUERY) returns the installed configuration (null when
// none is).  Any other pointer installs that configuration and returns the
// previous one; a null pointer uninstalls.  The caller keeps ownership.
// Nothing is installed at start.
NXBS_API NxConfig* DefaultConfig(NxConfig* config);

// ---------------------------------------------------------------------------
// Reports.
typedef int (*NxAssertHandler)(const char* expression, const char* file, int line);

// Reports a failed condition.  The default handler writes one line to stderr
// naming the expression, the file and the line, and returns 0; the caller
// goes on.  An installed handler decides for itself (count, record, abort).
NXBS_API int ZENTRO_assert(const char* expression, const char* file, int line);
// Installs `handler` (null restores the default) and returns the previous one.
NXBS_API NxAssertHandler NxSetAssertHandler(NxAssertHandler handler);

// Called after a failed allocation of `size` bytes.  Throws std::bad_alloc:
// the one exception that leaves the library.
NXBS_API int NxCallMemoryHandler(uint32_t size);

// 0 when `major` and `minor` match the base library's own numbers (9.5);
// NxVERSION_MAJOR_MISMATCH or NxVERSION_MINOR_MISMATCH otherwise.  With
// NxVERSION_FLAG_BUILD in `flags` the build number must match too
// (NxVERSION_BUILD_MISMATCH).  Flags without the two caller bits set give
// NxVERSION_BAD_FLAGS.  `patch` and `extra` are informational.
NXBS_API int CheckNxVersionNumber(uint32_t major, uint32_t minor, uint32_t build, uint32_t patch,
                                  uint32_t extra, int flags);

// ---------------------------------------------------------------------------
// Clock.  Local time is UTC plus the zone offset.
enum : int32_t { NxZONE_UNKNOWN = -2171 };

NXBS_API void nxsgetdate(bdate* date);                     // today's local date
NXBS_API void nxsgettime(btime* time);                     // local time; zone in seconds
NXBS_API void nxsgetsystemtime(btime* time, bdate* date);  // UTC; zone 0
NXBS_API int32_t nxsgettimezone();                         // minutes local minus UTC, or -2171

// The clock seam: fixes "now" (milliseconds since 1970-01-01 UTC) and the
// zone (minutes east of UTC, or NxZONE_UNKNOWN) for every reader of the clock,
// until NxClockRelease.  For tests and for applications that replay time.
NXBS_API void NxClockFix(int64_t utcMilliseconds, int32_t zoneMinutes);
NXBS_API void NxClockRelease();
// Milliseconds since 1970-01-01 UTC, from the system clock or the seam.
NXBS_API int64_t NxClockNowMilliseconds();

#endif
