// UTF-8 on the command line and on stdin, through the library's conversion.
// Strings hold 16-bit characters: text with characters beyond U+FFFF is
// refused with a message that names them, never silently changed.
#ifndef NXTM_CLI_UTF8_H
#define NXTM_CLI_UTF8_H

#include <string>

#include <nxtm/nxtm.h>

namespace cli {

// Decodes UTF-8 into a string of code set 253 and `language`.  False with a
// message in `error` (malformed UTF-8, a NUL character, a character beyond
// U+FFFF, too long), naming the byte (counted from 1) where it is.
bool ReadUtf8(const std::string& in, unsigned char language, NxString& out, std::string& error);
// The text of a string of any code set in UTF-8.
std::string WriteUtf8(const NxString& text);
// One 16-bit character in UTF-8.
std::string Utf8Of(unsigned short c);
// One 16-bit character as the program shows it: itself in UTF-8, or
// <U+XXXX> for those that show nothing or show alike (controls, format
// characters, line breaks, spaces, lone surrogates).  With
// `blankAsItself`, as within quoted text, the blank shows as itself.
std::string ShownChar(unsigned short c, bool blankAsItself = false);

}  // namespace cli

#endif
