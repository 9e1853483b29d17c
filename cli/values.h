// Values of any row on the command line: how the program reads a value of a
// type from an argument and shows one.  Each family registers its text in its
// own file; a row without one is read through its scan slot and shown through
// its print slot with the row's format.
#ifndef NXTM_CLI_VALUES_H
#define NXTM_CLI_VALUES_H

#include <cstdint>
#include <string>
#include <vector>

#include <nxtm/nxtm.h>

#include "cli.h"

namespace cli {

struct ValueText {
  // Reads `text` into the constructed memory element `element`.  False with
  // a message in `error` (without the command's name) on malformed text.
  bool (*read)(const std::string& text, void* element, std::string& error);
  // The value of the memory element, as the program shows it.
  std::string (*show)(const void* element);
  // For rows of variable disk length: the disk length of the element that
  // starts at `bytes`, or 0 when the `available` bytes do not hold a whole
  // one.  Null for fixed-length rows.
  size_t (*diskLength)(const unsigned char* bytes, size_t available, unsigned char format);
  // For rows that store a whole array as one record (NxBlob): the elements
  // in the record of `length` bytes at `bytes`, 0 when they don't fill it.
  // Null for rows of one record per element.
  uint32_t (*diskCount)(const unsigned char* bytes, size_t length, unsigned char format) = nullptr;
};

// Registers the text of a type id; used through a static registrar in the
// family's file.
void RegisterValueText(char id, const ValueText& text);
// The text registered for `id`, or null.
const ValueText* FindValueText(char id);

struct ValueTextRegistrar {
  ValueTextRegistrar(char id, const ValueText& text) { RegisterValueText(id, text); }
};

// A type may take the generic `store` and `load` over: for options of its
// own, or a disk form that holds a whole array in one record.  Each gets the
// command's arguments as given.
struct ValueCommands {
  int (*store)(const Args& args);
  int (*load)(const Args& args);
};
void RegisterValueCommands(char id, const ValueCommands& commands);
const ValueCommands* FindValueCommands(char id);
struct ValueCommandsRegistrar {
  ValueCommandsRegistrar(char id, const ValueCommands& commands) {
    RegisterValueCommands(id, commands);
  }
};

// The disk length of the NxString record at `bytes` (cmd_strdisk.cpp).
size_t StringDiskLength(const unsigned char* bytes, size_t available, unsigned char format);

// A type by name ("long") or by number ("2").
bool FindType(const NxTypeMgr& mgr, const std::string& text, char& id);

// True when the row has its own function in the slot picked by `slot`.
template <typename Slot>
bool Stands(const NxTypeMgr& mgr, char id, Slot slot) {
  return mgr.RowGet(id)->*slot != NxTypeMgr::IllegalRowGet()->*slot;
}

// An array of memory elements of one type, made and freed by the manager.
class Values {
 public:
  Values(NxTypeMgr& mgr, char id) : mgr_(mgr), id_(id) {}
  ~Values();
  Values(const Values&) = delete;
  Values& operator=(const Values&) = delete;
  // Makes `count` new elements (the row's Create), dropping any before.
  bool Make(uint32_t count);
  void* data() const { return data_; }
  uint32_t count() const { return count_; }
  void* at(uint32_t index) const;

 private:
  NxTypeMgr& mgr_;
  char id_;
  void* data_ = nullptr;
  uint32_t count_ = 0;
};

// Reads the argument texts into new elements.  A text equal to the null
// print string makes a null element in rows that have a null value.  False
// with a message in `error` on malformed text or a row without a text form.
bool ReadValues(NxTypeMgr& mgr, char id, const std::string& typeName, const Args& texts,
                Values& out, std::string& error);
// One memory element as the program shows it: the null print string for a
// null element, the registered text, or the row's print with its format.
std::string ShowValue(NxTypeMgr& mgr, char id, const void* element);

// Hex digits into bytes; false with a message on an odd count or a non-digit.
bool ParseHex(const std::string& hex, std::vector<unsigned char>& bytes, std::string& error);
std::string Hex(const unsigned char* bytes, size_t count);

// A 16-bit field of a disk form: most significant byte first in format 2,
// least significant first in format 1.
inline uint32_t Get16(const unsigned char* at, unsigned char format) {
  return format == 2 ? (uint32_t{at[0]} << 8) | at[1] : at[0] | (uint32_t{at[1]} << 8);
}

// A format argument: 1 or 2, and 8 when `allowMemory`.
bool ParseFormat(const std::string& text, bool allowMemory, unsigned char& format);

// nxtm compare --type: two values of any row through its comparator
// (cmd_compare.cpp); the text form of compare hands over to it.
int RunTypedCompare(const Args& args);

}  // namespace cli

#endif
