// NxBlob: a binary value of any length.
//
// An NxBlob is one pointer to an NxBlobData record that holds the bytes.  A
// null pointer is the null blob; an empty blob has a record of length 0, so
// the two differ although both have Length() 0.  Every blob owns its record
// and every record its buffer: nothing is shared and every copy copies.
// Buffers come from malloc; a failed malloc goes to NxCallMemoryHandler,
// which throws std::bad_alloc.  Lengths, positions and sizes are the 32-bit
// `long` of the stored world: a blob holds at most 2^31 - 1 bytes.
//
// Disk form of `count` blobs (every word 4 bytes, in the format's byte
// order): one total word, the number of bytes that follow it; then for each
// blob its length, or -1 for a null blob, and its bytes, which are never
// turned.  The row's memory length is sizeof(NxBlob).
#ifndef NXTM_NXBLOB_H
#define NXTM_NXBLOB_H

#include <nxtm/nxtmdefs.h>

class NxBlob;
class NxString;

// The bytes of a blob.  `length` may be less than the buffer's size, which
// is not recorded.  `data` may be null with `length` 0.
class NXTM_API NxBlobData {
 public:
  NxBlobData() : data(nullptr), length(0) {}
  // `size` bytes whose content is not set (a negative size counts as 0).
  explicit NxBlobData(int32_t size);
  // A copy of `n` bytes at `source`.
  NxBlobData(const void* source, int32_t n);
  // A copy of the bytes of `blob`.
  explicit NxBlobData(const NxBlob& blob);
  ~NxBlobData();
  NxBlobData(const NxBlobData&) = delete;
  NxBlobData& operator=(const NxBlobData&) = delete;

  // Becomes a copy of `n` bytes at `source`.  A buffer that holds at least
  // `n` and at most `n` + 128 bytes in use is reused; otherwise a new one is
  // made (none for `n` 0).  `source` may point into this record's buffer.
  void SetData(const void* source, int32_t n);
  // 0: no buffer, length 0.  Longer: a new buffer with the old bytes in
  // front and an unset tail.  Shorter: the length alone changes.
  void Resize(uint32_t n);

  char* data;      // the buffer, from malloc; may be null with length 0
  int32_t length;  // bytes in use
};

class NXTM_API NxBlob {
 public:
  // An empty blob, not the null blob.
  NxBlob();
  // `size` bytes whose content is not set.
  explicit NxBlob(int32_t size);
  // A copy of `size` bytes.
  NxBlob(const void* bytes, int32_t size);
  // A copy; the null blob gives the null blob.
  NxBlob(const NxBlob& other);
  ~NxBlob();
  NxBlob& operator=(const NxBlob& other);

  // 1 when both are null, or both not null with equal lengths and bytes.
  int operator==(const NxBlob& other) const;
  // An ordering: both null 0; this null -2, the other null 2; otherwise the
  // first differing byte (unsigned) gives -1 or 1, and then the shorter
  // blob orders first.
  int operator!=(const NxBlob& other) const;
  // Appends; a source of length 0 changes nothing (a null blob stays null).
  NxBlob& operator+=(const NxBlob& other);

  // Bytes in use; 0 for the null blob too.
  int32_t Length() const;
  // Makes the blob `size` bytes long, keeping the first bytes; a null blob
  // gets `size` unset bytes.  Can shrink.
  NxBlob& Expand(int32_t size);
  // As Expand, but a shorter size keeps the buffer, and 0 leaves an empty
  // blob.  A size that is negative as a 32-bit number counts as 0.
  void Resize(uint32_t size);
  // Appends `size` bytes; a size below 1 changes nothing.
  NxBlob& Append(const void* bytes, int32_t size);
  NxBlob& Append(const NxBlob& other);
  // The address of `position`, when `size` bytes from there lie inside the
  // blob and `size` is not 0; otherwise null.  Good until the next change.
  char* Seek(int32_t position, int32_t size);
  // A new blob of `size` bytes from `position`, cut at the end of this one.
  // An empty blob when this one is null, `position` lies behind the end or
  // `size` is 0.
  NxBlob CopyFrom(int32_t position, int32_t size) const;
  // Writes the first `size` bytes of `source` at `position` of this blob,
  // cut at its end (and at the end of `source`); the length stays.
  NxBlob& CopyTo(const NxBlob& source, int32_t position, int32_t size);
  // Becomes a copy of `size` bytes; a null blob becomes a blob.
  NxBlob& SetTo(const void* bytes, int32_t size);
  // Removes `size` bytes from `position`, cut at the end.
  NxBlob& Cut(int32_t position, int32_t size);
  // The first position at which `pattern` stands, 0 for an empty pattern;
  // 65535 when there is none or this blob is null.
  int32_t Search(const NxBlob& pattern) const;
  // Takes over the bytes of `source`, which becomes empty (or stays null).
  void Destroy(NxBlob& source);

  int IsNullValue() const { return blobData == nullptr ? 1 : 0; }
  // Frees the bytes and makes this the null blob; returns 0.
  int SetNullValue();

 private:
  friend class NxBlobData;
  // A record of `n` + 1 bytes, room for a text and its terminator; null
  // when no memory is left.
  static NxBlobData* AllocData(int32_t n);
  // A blob of the text and its terminator.
  explicit NxBlob(const char* text);
  // The buffer of a string over its whole size, terminator included, in
  // its own width; a null string gives the null blob.
  explicit NxBlob(const NxString& text);
  // The bytes behind the 32-bit length that starts `record`; a negative
  // length leaves the null blob.
  NxBlob& operator=(const char* record);
  // The bytes read as a terminated number text; 0 for the null blob.
  operator int() const;
  operator short() const;
  operator double() const;

  NxBlobData* blobData;  // owned; null for the null blob
};

#endif
