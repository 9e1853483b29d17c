// UTF-8 on the command line and on stdin: the program's own converter.
#ifndef NXTM_CLI_UTF8_H
#define NXTM_CLI_UTF8_H

#include <cstdint>
#include <string>
#include <vector>

namespace cli {

// Decodes UTF-8 into code points.  On malformed input (a bad lead byte, a
// sequence cut short, an overlong form, a surrogate, a value past the last
// plane) returns false with `where` at the byte offset of the sequence.
bool DecodeUtf8(const std::string& in, std::vector<uint32_t>& out, size_t& where);
// Appends the UTF-8 form of `cp`.
void AppendUtf8(std::string& out, uint32_t cp);
// Appends the UTF-16 form of `cp`: one unit, or a surrogate pair.
void AppendUtf16(std::vector<unsigned short>& units, uint32_t cp);

}  // namespace cli

#endif
