// The program's own UTF-8 converter.
#include "utf8.h"

namespace cli {

// Decodes UTF-8 into code points.  On malformed input returns false and
// sets `where` to the byte offset of the offending sequence.
bool DecodeUtf8(const std::string& in, std::vector<uint32_t>& out, size_t& where) {
  out.clear();
  size_t i = 0;
  while (i < in.size()) {
    const unsigned char b = static_cast<unsigned char>(in[i]);
    uint32_t cp;
    size_t extra;
    uint32_t min;
    if (b < 0x80) {
      cp = b, extra = 0, min = 0;
    } else if ((b & 0xE0) == 0xC0) {
      cp = b & 0x1F, extra = 1, min = 0x80;
    } else if ((b & 0xF0) == 0xE0) {
      cp = b & 0x0F, extra = 2, min = 0x800;
    } else if ((b & 0xF8) == 0xF0) {
      cp = b & 0x07, extra = 3, min = 0x10000;
    } else {
      where = i;
      return false;
    }
    if (i + extra >= in.size()) {  // cut short by the end of the line
      where = i;
      return false;
    }
    for (size_t k = 1; k <= extra; ++k) {
      const unsigned char c = static_cast<unsigned char>(in[i + k]);
      if ((c & 0xC0) != 0x80) {
        where = i;
        return false;
      }
      cp = (cp << 6) | (c & 0x3F);
    }
    // Overlong forms, surrogates and values past the last plane.
    if (cp < min || (cp >= 0xD800 && cp <= 0xDFFF) || cp > 0x10FFFF) {
      where = i;
      return false;
    }
    out.push_back(cp);
    i += extra + 1;
  }
  return true;
}

void AppendUtf8(std::string& out, uint32_t cp) {
  if (cp < 0x80) {
    out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    out += static_cast<char>(0xC0 | (cp >> 6));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else if (cp < 0x10000) {
    out += static_cast<char>(0xE0 | (cp >> 12));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (cp >> 18));
    out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  }
}

void AppendUtf16(std::vector<unsigned short>& units, uint32_t cp) {
  if (cp >= 0x10000) {
    cp -= 0x10000;
    units.push_back(static_cast<unsigned short>(0xD800 + (cp >> 10)));
    units.push_back(static_cast<unsigned short>(0xDC00 + (cp & 0x3FF)));
  } else {
    units.push_back(static_cast<unsigned short>(cp));
  }
}

}  // namespace cli
