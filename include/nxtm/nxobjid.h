// Identifiers: object numbers, class ids and references.
//
// Five small value classes name the objects of the database.  They hold no
// heap memory and have no virtual operations:
//
//   NxObjId     an object within one database: a 48-bit object number split
//               into `high` and `low`, and the `block` word that travels
//               with it but takes no part in identity
//   NxDBOId     an object qualified by a database number
//   NxClassId   a class number and its version
//   NxRef       a persistent reference: object, database and class
//   NxLocalRef  a reference within one database: object and class
//
// `operator!=` of these classes is a three-way comparison, not a boolean: 1
// when this value is the greater, -1 when it is the smaller, 0 when the two
// are equal, all fields compared unsigned.  So `a != b` still reads as "a
// differs from b", and its sign orders the two.  `operator==` gives 1 or 0.
//
// NxObjId, NxClassId and NxRef have rows in the type table; their static
// members are the functions of those rows.  Their Compare orders memory
// elements (the whole format 8) by `operator!=`, and disk keys by bytes:
// NxObjId by `high` then `low`, NxClassId by `classNumber` then `version`
// (null first), NxRef by `database`, then `high`, then `low`, each read
// most significant byte first as a key of format 1 holds them; the result
// is the first difference of two bytes.  A key of format 2 compares at the
// same offsets: a consistent order, but not that of the numbers.
//
// Text forms.  A format is an 8-bit string in which "%H", "%L", "%B", "%D",
// "%C" and "%V" stand for `high`, `low`, `block`, `database`, `classNumber`
// and `version` where the class has that field, as unsigned decimals; "%%" is
// a "%"; "%" before any other character is that character.  "%hu" and "%lu"
// take their field by place rather than by letter, from a counter that starts
// at 0 with each call:
//
//   place   NxObjId       NxClassId            NxRef
//   0       %hu high      %hu classNumber      %hu database
//   1       %lu low       %hu version          %hu high
//   2       %lu block                          %lu low
//   3                                          %lu block
//   4                                          %hu classNumber
//
// An item whose letter does not fit its place prints 0 and, in a scan, reads
// a number that is dropped.  (NxClassId has no "%lu": there "l" is a plain
// letter.)  A null value prints the null print string whatever the format.
// Scanning never fails: every non-"%" character of the format passes over one
// input character without looking at it, every number item reads a number
// where the input stands (blanks and a sign in front are accepted) and passes
// over the digits, and fields that the format does not reach become 0.
// Printed texts are at most 511 characters long.
#ifndef NXTM_NXOBJID_H
#define NXTM_NXOBJID_H

#include <nxtm/nxtmdefs.h>

class NxDBOId;
class NxRef;
class NxLocalRef;

// An object within one database.  The default is every field 0; `low` and
// `high` both 0 is the null identifier.
class NXTM_API NxObjId {
 public:
  NxObjId() : block(0), low(0), high(0) {}
  // The fields in the order of the text form "(high-low#block)".
  NxObjId(uint16_t high, uint32_t low, uint32_t block = 0) : block(block), low(low), high(high) {}

  // The greatest object number: `low` 0xFFFFFFFF, `high` 0xFFFF, `block` 0.
  void SetHighestValue() {
    block = 0;
    low = 0xFFFFFFFFu;
    high = 0xFFFFu;
  }
  // One up or down in the 48-bit object number, wrapping at either end.
  // `block` is left alone.
  NxObjId& operator++();
  NxObjId& operator--();
  // Adds `n` (negative values subtract) to the object number, carrying into
  // or borrowing from `high`.
  NxObjId& operator+=(short n);

  // Identity is the object number: `block` is ignored.
  int operator==(const NxObjId& other) const { return low == other.low && high == other.high; }
  // Three-way on `high`, then `low`.
  int operator!=(const NxObjId& other) const;
  // The same on the object number of an NxDBOId, whose `database` is ignored.
  int operator==(const NxDBOId& other) const;
  int operator!=(const NxDBOId& other) const;
  // Takes `block`, `low` and `high`; the database is dropped.
  NxObjId& operator=(const NxDBOId& other);

  // The text form; the format defaults to "(%H-%L#%B)".  Replaces `result`.
  NxString& PrintToNxString(NxString& result, const char* format = nullptr) const;
  void ScanFromNxString(const NxString& input, const char* format = nullptr);

  // The functions of the NxObjId row.  Memory elements are 12 bytes apart;
  // an element is 10 bytes on disk: block (4), low (4), high (2), each field
  // most significant byte first when the low four bits of `format` are 2, and
  // least significant byte first otherwise.
  static void* Create(uint32_t count);
  static void* Delete(void* value, uint32_t count);
  static void Constructor(void* memory, uint32_t count, uint32_t = 0);
  static void Destructor(void* memory, uint32_t count, uint32_t = 0);
  static void Assignment(void* destination, void* source, uint32_t count, int broadcast);
  static void Copy(void* destination, void* source, uint32_t count, int broadcast);
  static uint32_t Store(void* disk, const void* memory, unsigned char format, uint32_t count);
  static uint32_t Load(void* memory, const void* disk, unsigned char format, uint32_t count);
  static uint32_t NullSizeGet(uint32_t count);
  static uint32_t SizeGet(const void* value, unsigned char valueFormat, unsigned char diskFormat,
                          uint32_t count);
  static uint32_t SizeGetFromMemFile(MemFile* file, unsigned char format, uint32_t count);
  static int32_t Compare(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                         void* value2, unsigned short cmpOp, uint32_t count, int& status);
  static uint32_t Translate(void* destination, unsigned char destinationFormat,
                            uint32_t destinationSize, void* source, unsigned char sourceFormat,
                            uint32_t sourceSize, uint32_t count);
  // Print and scan of one element; a null format is "(%H-%L#%B)".  `count`
  // is not looked at.  The scan gives null for a null `value`.
  static NxString& PrintToString(NxString& result, void* value, const char* format, uint32_t count);
  static void* ScanFromString(void* value, NxString& text, const char* format, uint32_t count);

  // The range estimate of the row: a key counts as `high` * 65535 + `low`,
  // so keys of different `high` can share a number; narrowed keys are
  // `count` * 10 bytes.  The hash is `low` ^ `high` of each element: the
  // block never enters.  In disk form the fields are read least significant
  // byte first whatever the format says, so format 2 hashes apart from
  // memory and format 1.  `length` is not looked at.
  static float EvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                           unsigned char format, uint32_t count, NxIdxBounds* narrowed);
  static uint32_t Hash(unsigned char format, uint32_t length, void* value, uint32_t count,
                       int& status);

  uint32_t block;  // block number; not part of identity
  uint32_t low;    // low 32 bits of the object number
  uint16_t high;   // high 16 bits of the object number
};

// An object qualified by a database.  `database` 0 names no database.
class NXTM_API NxDBOId {
 public:
  NxDBOId() : block(0), low(0), high(0), database(0) {}
  NxDBOId(const NxObjId& objId, uint16_t database)
      : block(objId.block), low(objId.low), high(objId.high), database(database) {}

  // Takes `block`, `low` and `high`; `database` becomes 0.
  NxDBOId& operator=(const NxObjId& other);
  // `low`, `high` and `database` equal.
  int operator==(const NxDBOId& other) const {
    return low == other.low && high == other.high && database == other.database;
  }
  // The object numbers equal and this identifier names no database.
  int operator==(const NxObjId& other) const {
    return low == other.low && high == other.high && database == 0;
  }
  // Three-way on `database`, then `high`, then `low`.
  int operator!=(const NxDBOId& other) const;
  // 1 when this identifier names a database; else three-way on the object
  // numbers.
  int operator!=(const NxObjId& other) const;

  // The text form of the object id alone (default "(%H-%L#%B)"): the
  // database cannot be printed, and a scan sets it to 0.
  NxString& PrintToNxString(NxString& result, const char* format = nullptr) const;
  void ScanFromNxString(const NxString& input, const char* format = nullptr);

  uint32_t block;
  uint32_t low;
  uint16_t high;
  uint16_t database;
};

// A class and its version.  The default is (0, 0); both fields 0xFFFF is the
// null class id, which orders below every other class id.
class NXTM_API NxClassId {
 public:
  NxClassId() : classNumber(0), version(0) {}
  NxClassId(uint16_t classNumber, uint16_t version) : classNumber(classNumber), version(version) {}

  // Two null class ids are equal; a null class id is below any other; others
  // compare by `classNumber`, then `version`.
  int operator!=(const NxClassId& other) const;
  int operator==(const NxClassId& other) const { return (*this != other) == 0; }
  // 1 when `operator!=` is positive.
  int operator>(const NxClassId& other) const { return (*this != other) > 0; }

  // The text form; the format defaults to "(%Cv%V)".  Replaces `result`.
  NxString& PrintToNxString(NxString& result, const char* format = nullptr) const;
  void ScanFromNxString(const NxString& input, const char* format = nullptr);

  // The functions of the NxClassId row.  Memory elements are 4 bytes apart;
  // an element is 4 bytes on disk: classNumber (2), version (2).  Arrays carry
  // no hidden count.
  static void* Create(uint32_t count);
  static void* Delete(void* value, uint32_t count);
  static void Constructor(void* memory, uint32_t count, uint32_t = 0);
  static void Destructor(void* memory, uint32_t count, uint32_t = 0);
  static void Assignment(void* destination, void* source, uint32_t count, int broadcast);
  static void Copy(void* destination, void* source, uint32_t count, int broadcast);
  static uint32_t Store(void* disk, const void* memory, unsigned char format, uint32_t count);
  static uint32_t Load(void* memory, const void* disk, unsigned char format, uint32_t count);
  static uint32_t NullSizeGet(uint32_t count);
  static uint32_t SizeGet(const void* value, unsigned char valueFormat, unsigned char diskFormat,
                          uint32_t count);
  static uint32_t SizeGetFromMemFile(MemFile* file, unsigned char format, uint32_t count);
  static int32_t Compare(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                         void* value2, unsigned short cmpOp, uint32_t count, int& status);
  static uint32_t Translate(void* destination, unsigned char destinationFormat,
                            uint32_t destinationSize, void* source, unsigned char sourceFormat,
                            uint32_t sourceSize, uint32_t count);
  // A null format is "(%Cv%V)".
  static NxString& PrintToString(NxString& result, void* value, const char* format, uint32_t count);
  static void* ScanFromString(void* value, NxString& text, const char* format, uint32_t count);

  // The range estimate is 1 for every range: it reads no argument and
  // narrows nothing.  The hash is `classNumber` ^ `version` of each element,
  // read on disk least significant byte first whatever the format says;
  // `length` is not looked at.
  static float EvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                           unsigned char format, uint32_t count, NxIdxBounds* narrowed);
  static uint32_t Hash(unsigned char format, uint32_t length, void* value, uint32_t count,
                       int& status);

  uint16_t classNumber;  // 0 in a reference: no class is named
  uint16_t version;
};

// A persistent reference: an object, the database it lives in, and its
// class.  `database` 0xFFFF marks an origin reference.  The reference is null
// (and empty) when the object number is 0.
class NXTM_API NxRef {
 public:
  NxRef() : database(0) {}
  NxRef(const NxObjId& objId, uint16_t database, const NxClassId& classId)
      : objId(objId), database(database), classId(classId) {}

  // Each replaces its own part and leaves the rest.
  NxRef& operator=(const NxObjId& other);
  NxRef& operator=(const NxClassId& other);
  // The object id and the database; the class id stays.
  NxRef& operator=(const NxDBOId& other);
  // The database alone.
  NxRef& operator=(unsigned short database);
  // The object id and the class id; `database` becomes 0.
  NxRef& operator=(const NxLocalRef& other);

  // Identity is the object number and the database; the class id is ignored.
  int operator==(const NxRef& other) const {
    return objId == other.objId && database == other.database;
  }
  // Three-way on `high`, then `low`, then `database`: here the database is
  // the least significant key (in NxDBOId it is the most significant).
  int operator!=(const NxRef& other) const;

  // Valid: an object number, a class, and not an origin reference.  Invalid
  // is the exact opposite.
  unsigned short IsValid() const;
  unsigned short IsInvalid() const { return IsValid() ? 0 : 1; }
  // A valid origin id: an object number, and either the origin database or a
  // class.  Only `classNumber` counts, never the version.
  unsigned short IsValidOriginId() const;
  unsigned short IsInvalidOriginId() const { return IsValidOriginId() ? 0 : 1; }

  // The text form; the format defaults to "(%D:%H-%L#%B, %C)".
  NxString& PrintToNxString(NxString& result, const char* format = nullptr) const;
  void ScanFromNxString(const NxString& input, const char* format = nullptr);

  // The functions of the NxRef row.  Memory elements are 20 bytes apart; an
  // element is 14 bytes on disk: block (4), low (4), high (2), database (2),
  // classNumber (2).  The version is not stored, and Load sets it to 0.
  static void* Create(uint32_t count);
  static void* Delete(void* value, uint32_t count);
  static void Constructor(void* memory, uint32_t count, uint32_t = 0);
  static void Destructor(void* memory, uint32_t count, uint32_t = 0);
  static void Assignment(void* destination, void* source, uint32_t count, int broadcast);
  static void Copy(void* destination, void* source, uint32_t count, int broadcast);
  static uint32_t Store(void* disk, const void* memory, unsigned char format, uint32_t count);
  static uint32_t Load(void* memory, const void* disk, unsigned char format, uint32_t count);
  static uint32_t NullSizeGet(uint32_t count);
  static uint32_t SizeGet(const void* value, unsigned char valueFormat, unsigned char diskFormat,
                          uint32_t count);
  static uint32_t SizeGetFromMemFile(MemFile* file, unsigned char format, uint32_t count);
  static int32_t Compare(unsigned char format, uint32_t length1, void* value1, uint32_t length2,
                         void* value2, unsigned short cmpOp, uint32_t count, int& status);
  static uint32_t Translate(void* destination, unsigned char destinationFormat,
                            uint32_t destinationSize, void* source, unsigned char sourceFormat,
                            uint32_t sourceSize, uint32_t count);
  // A null format here is "(%D:%H-%L#%B,%Cv%V)", which shows the version;
  // the row and the member functions default to "(%D:%H-%L#%B, %C)".
  static NxString& PrintToString(NxString& result, void* value, const char* format, uint32_t count);
  static void* ScanFromString(void* value, NxString& text, const char* format, uint32_t count);

  // The range estimate measures against the whole number space of
  // references, (database * 65535 + high) * (2^32 - 1) + low, and never reads
  // `bounds`; it masks `op` with 0x800F and narrows to `count` * 14 bytes.
  // The hash is `low` ^ `high` ^ `database` of each element (not the class),
  // read on disk least significant byte first whatever the format says;
  // `length` is not looked at.
  static float EvalAndBound(NxIdxBounds* bounds, unsigned short& op, void* value,
                           unsigned char format, uint32_t count, NxIdxBounds* narrowed);
  static uint32_t Hash(unsigned char format, uint32_t length, void* value, uint32_t count,
                       int& status);

  NxObjId objId;
  uint16_t database;
  NxClassId classId;
};

// A reference within one database: an object and its class, no database.
class NXTM_API NxLocalRef {
 public:
  NxLocalRef() {}
  NxLocalRef(const NxObjId& objId, const NxClassId& classId) : objId(objId), classId(classId) {}

  // The object id and the class id; the database is dropped.
  NxLocalRef& operator=(const NxRef& other);
  NxLocalRef& operator=(const NxClassId& other);
  NxLocalRef& operator=(const NxObjId& other);

  // Identity is the object number; the class id is ignored.
  int operator==(const NxLocalRef& other) const { return objId == other.objId; }
  int operator!=(const NxLocalRef& other) const { return objId != other.objId; }
  // Equal to a reference with the same object number that names no database.
  int operator==(const NxRef& other) const;
  // Three-way on the object numbers; with equal numbers, -1 when the
  // reference names a database.
  int operator!=(const NxRef& other) const;

  // The text form of a reference with database 0; the format defaults to
  // "(%H-%L#%B,%C)".  A scan drops any database in the text.
  NxString& PrintToNxString(NxString& result, const char* format = nullptr) const;
  void ScanFromNxString(const NxString& input, const char* format = nullptr);

  NxObjId objId;
  NxClassId classId;
};

// ---------------------------------------------------------------------------
// The comparisons, inline: they sit on the paths of every object look-up.

namespace nxid_detail {
template <typename T>
inline int ThreeWay(T a, T b) {
  return a > b ? 1 : (a < b ? -1 : 0);
}
inline int ObjectNumberOrder(uint16_t high1, uint32_t low1, uint16_t high2, uint32_t low2) {
  return high1 != high2 ? ThreeWay(high1, high2) : ThreeWay(low1, low2);
}
}  // namespace nxid_detail

inline int NxObjId::operator!=(const NxObjId& other) const {
  return nxid_detail::ObjectNumberOrder(high, low, other.high, other.low);
}
inline int NxObjId::operator==(const NxDBOId& other) const {
  return low == other.low && high == other.high;
}
inline int NxObjId::operator!=(const NxDBOId& other) const {
  return nxid_detail::ObjectNumberOrder(high, low, other.high, other.low);
}
inline NxObjId& NxObjId::operator=(const NxDBOId& other) {
  block = other.block;
  low = other.low;
  high = other.high;
  return *this;
}

inline NxDBOId& NxDBOId::operator=(const NxObjId& other) {
  block = other.block;
  low = other.low;
  high = other.high;
  database = 0;
  return *this;
}
inline int NxDBOId::operator!=(const NxDBOId& other) const {
  if (database != other.database) return nxid_detail::ThreeWay(database, other.database);
  return nxid_detail::ObjectNumberOrder(high, low, other.high, other.low);
}
inline int NxDBOId::operator!=(const NxObjId& other) const {
  if (database != 0) return 1;
  return nxid_detail::ObjectNumberOrder(high, low, other.high, other.low);
}

inline int NxClassId::operator!=(const NxClassId& other) const {
  const bool null = classNumber == 0xFFFFu && version == 0xFFFFu;
  const bool otherNull = other.classNumber == 0xFFFFu && other.version == 0xFFFFu;
  if (null || otherNull) return null == otherNull ? 0 : (null ? -1 : 1);
  if (classNumber != other.classNumber)
    return nxid_detail::ThreeWay(classNumber, other.classNumber);
  return nxid_detail::ThreeWay(version, other.version);
}

inline NxRef& NxRef::operator=(const NxObjId& other) {
  objId = other;
  return *this;
}
inline NxRef& NxRef::operator=(const NxClassId& other) {
  classId = other;
  return *this;
}
inline NxRef& NxRef::operator=(const NxDBOId& other) {
  objId = other;
  database = other.database;
  return *this;
}
inline NxRef& NxRef::operator=(unsigned short newDatabase) {
  database = newDatabase;
  return *this;
}
inline NxRef& NxRef::operator=(const NxLocalRef& other) {
  objId = other.objId;
  database = 0;
  classId = other.classId;
  return *this;
}
inline int NxRef::operator!=(const NxRef& other) const {
  const int order = objId != other.objId;
  return order != 0 ? order : nxid_detail::ThreeWay(database, other.database);
}
inline unsigned short NxRef::IsValid() const {
  const bool empty = objId.low == 0 && objId.high == 0;
  return !empty && classId.classNumber != 0 && database != 0xFFFFu ? 1 : 0;
}
inline unsigned short NxRef::IsValidOriginId() const {
  const bool empty = objId.low == 0 && objId.high == 0;
  return !empty && (database == 0xFFFFu || classId.classNumber != 0) ? 1 : 0;
}

inline NxLocalRef& NxLocalRef::operator=(const NxRef& other) {
  objId = other.objId;
  classId = other.classId;
  return *this;
}
inline NxLocalRef& NxLocalRef::operator=(const NxClassId& other) {
  classId = other;
  return *this;
}
inline NxLocalRef& NxLocalRef::operator=(const NxObjId& other) {
  objId = other;
  return *this;
}
inline int NxLocalRef::operator==(const NxRef& other) const {
  return objId == other.objId && other.database == 0;
}
inline int NxLocalRef::operator!=(const NxRef& other) const {
  const int order = objId != other.objId;
  return order != 0 ? order : (other.database != 0 ? -1 : 0);
}

#endif
