// The command-line text of NxBlob: "0x" and hex digits for bytes, any other
// argument for its own UTF-8 bytes (no terminator).  A blob shows as "0x"
// and its bytes in hex, so that what is shown reads back.
#include <cstring>
#include <string>
#include <vector>

#include <nxtm/nxtm.h>

#include "values.h"

namespace {

bool ReadBlob(const std::string& text, void* element, std::string& error) {
  NxBlob& blob = *static_cast<NxBlob*>(element);
  if (text.compare(0, 2, "0x") != 0) {
    blob.SetTo(text.data(), static_cast<int32_t>(text.size()));
    return true;
  }
  std::vector<unsigned char> bytes;
  if (!cli::ParseHex(text.substr(2), bytes, error)) return false;
  blob.SetTo(bytes.data(), static_cast<int32_t>(bytes.size()));
  return true;
}

std::string ShowBlob(const void* element) {
  NxBlob& blob = *static_cast<NxBlob*>(const_cast<void*>(element));
  const int32_t n = blob.Length();
  const unsigned char* bytes = reinterpret_cast<const unsigned char*>(blob.Seek(0, n));
  return "0x" + cli::Hex(bytes, bytes != nullptr ? static_cast<size_t>(n) : 0);
}

uint32_t Word(const unsigned char* bytes, unsigned char format) {
  uint32_t word;
  LongStore(&word, bytes, format, 1);
  return word;
}

// The record: one total word for the whole array, then its blobs.  A total
// word of -1 is a record of that word alone.
size_t BlobDiskLength(const unsigned char* bytes, size_t available, unsigned char format) {
  if (available < 4) return 0;
  const uint32_t total = Word(bytes, format);
  if (total == 0xFFFFFFFFu) return 4;
  return total <= available - 4 ? 4 + static_cast<size_t>(total) : 0;
}

// The blobs in a record of `length` bytes: their length words and bytes
// must fill it exactly.  A record of the total word -1 holds one null blob.
uint32_t BlobDiskCount(const unsigned char* bytes, size_t length, unsigned char format) {
  if (length == 4 && Word(bytes, format) == 0xFFFFFFFFu) return 1;
  uint32_t count = 0;
  size_t at = 4;
  while (at < length) {
    if (length - at < 4) return 0;
    const uint32_t n = Word(bytes + at, format);
    at += 4;
    if (n != 0xFFFFFFFFu) {
      if (n > length - at) return 0;
      at += n;
    }
    ++count;
  }
  return count;
}

const cli::ValueTextRegistrar kBlob(NxTYPE_NxBlob,
                                    {ReadBlob, ShowBlob, BlobDiskLength, BlobDiskCount});

}  // namespace
