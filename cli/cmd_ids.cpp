// Identifiers on the command line: how NxObjId, NxClassId and NxRef values
// read from an argument and show.  Values are written in the program's own
// compact syntax, which show gives back and read accepts:
//
//   NxObjId    OBJECT[#BLOCK]            OBJECT is the 48-bit object number,
//                                        either whole ("4294967298") or as
//                                        HIGH-LOW ("1-2"); "#BLOCK" is the
//                                        block number, 0 when left out
//   NxClassId  CLASS[vVERSION]           "12v3"; the version is 0 when left out
//   NxRef      DATABASE.OBJECT.CLASS     "12.3.45", "12.1-2#9.45v2"
//
// All numbers are unsigned decimals within the width of their field.  The
// printed forms of the library ("(1-2#3)") are read by `nxtm scan`.
#include <cstdint>
#include <string>

#include <nxtm/nxtm.h>

#include "values.h"

namespace {

// A whole unsigned decimal no greater than `max`.
bool Decimal(const std::string& text, uint64_t max, uint64_t& value) {
  if (text.empty() || text.size() > 20) return false;
  uint64_t v = 0;
  for (char c : text) {
    if (c < '0' || c > '9') return false;
    v = v * 10 + static_cast<unsigned>(c - '0');
    if (v > max) return false;
  }
  value = v;
  return true;
}

const uint64_t kMaxObjectNumber = (uint64_t{1} << 48) - 1;

bool ReadObjId(const std::string& text, NxObjId& id, std::string& error) {
  const size_t hash = text.find('#');
  const std::string number = text.substr(0, hash);
  uint64_t block = 0;
  if (hash != std::string::npos && !Decimal(text.substr(hash + 1), 0xFFFFFFFFu, block)) {
    error = "the block after '#' must be a number from 0 to 4294967295";
    return false;
  }
  const size_t dash = number.find('-');
  uint64_t high = 0, low = 0;
  if (dash == std::string::npos) {
    uint64_t whole = 0;
    if (!Decimal(number, kMaxObjectNumber, whole)) {
      error = "the object number must be a number from 0 to 281474976710655, or HIGH-LOW";
      return false;
    }
    high = whole >> 32;
    low = whole & 0xFFFFFFFFu;
  } else if (!Decimal(number.substr(0, dash), 0xFFFF, high) ||
             !Decimal(number.substr(dash + 1), 0xFFFFFFFFu, low)) {
    error = "HIGH-LOW needs HIGH from 0 to 65535 and LOW from 0 to 4294967295";
    return false;
  }
  id = NxObjId(static_cast<uint16_t>(high), static_cast<uint32_t>(low),
               static_cast<uint32_t>(block));
  return true;
}

bool ReadClassId(const std::string& text, NxClassId& id, std::string& error) {
  const size_t v = text.find('v');
  uint64_t number = 0, version = 0;
  if (!Decimal(text.substr(0, v), 0xFFFF, number) ||
      (v != std::string::npos && !Decimal(text.substr(v + 1), 0xFFFF, version))) {
    error = "expected CLASS or CLASSvVERSION, each from 0 to 65535";
    return false;
  }
  id = NxClassId(static_cast<uint16_t>(number), static_cast<uint16_t>(version));
  return true;
}

bool ReadRef(const std::string& text, NxRef& ref, std::string& error) {
  const size_t first = text.find('.');
  const size_t second = first == std::string::npos ? first : text.find('.', first + 1);
  if (second == std::string::npos || text.find('.', second + 1) != std::string::npos) {
    error = "expected DATABASE.OBJECT.CLASS";
    return false;
  }
  uint64_t database = 0;
  if (!Decimal(text.substr(0, first), 0xFFFF, database)) {
    error = "the database must be a number from 0 to 65535";
    return false;
  }
  NxObjId objId;
  NxClassId classId;
  if (!ReadObjId(text.substr(first + 1, second - first - 1), objId, error) ||
      !ReadClassId(text.substr(second + 1), classId, error))
    return false;
  ref = NxRef(objId, static_cast<uint16_t>(database), classId);
  return true;
}

// The object number whole while it fits 32 bits, else as HIGH-LOW, as the
// printed forms show it.
std::string ShowObjId(const NxObjId& id) {
  std::string out = id.high == 0 ? std::to_string(id.low)
                                 : std::to_string(id.high) + "-" + std::to_string(id.low);
  if (id.block != 0) out += "#" + std::to_string(id.block);
  return out;
}

std::string ShowClassId(const NxClassId& id) {
  std::string out = std::to_string(id.classNumber);
  if (id.version != 0) out += "v" + std::to_string(id.version);
  return out;
}

const cli::ValueTextRegistrar kObjIdText(
    NxTYPE_NxObjId,
    {[](const std::string& text, void* element, std::string& error) {
       return ReadObjId(text, *static_cast<NxObjId*>(element), error);
     },
     [](const void* element) { return ShowObjId(*static_cast<const NxObjId*>(element)); },
     nullptr});

const cli::ValueTextRegistrar kClassIdText(
    NxTYPE_NxClassId,
    {[](const std::string& text, void* element, std::string& error) {
       return ReadClassId(text, *static_cast<NxClassId*>(element), error);
     },
     [](const void* element) { return ShowClassId(*static_cast<const NxClassId*>(element)); },
     nullptr});

const cli::ValueTextRegistrar kRefText(
    NxTYPE_NxRef, {[](const std::string& text, void* element, std::string& error) {
                     return ReadRef(text, *static_cast<NxRef*>(element), error);
                   },
                   [](const void* element) {
                     const NxRef& ref = *static_cast<const NxRef*>(element);
                     return std::to_string(ref.database) + "." + ShowObjId(ref.objId) + "." +
                            ShowClassId(ref.classId);
                   },
                   nullptr});

}  // namespace
