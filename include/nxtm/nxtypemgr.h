// The type table and the dispatch class NxTypeMgr, and the library's context
// and identification.
#ifndef NXTM_NXTYPEMGR_H
#define NXTM_NXTYPEMGR_H

#include <nxtm/nxtmdefs.h>

// Slot signatures of a row.  Every `long` of the stored world is 32 bits.
typedef void* (*NxCreateFunc)(uint32_t count);
typedef void* (*NxDeleteFunc)(void* value, uint32_t count);
typedef uint32_t (*NxStoreFunc)(void* disk, const void* memory, unsigned char format,
                                uint32_t count);
typedef uint32_t (*NxLoadFunc)(void* memory, const void* disk, unsigned char format,
                               uint32_t count);
typedef uint32_t (*NxNullSizeGetFunc)(uint32_t count);
typedef uint32_t (*NxSizeGetFunc)(const void* value, unsigned char valueFormat,
                                  unsigned char diskFormat, uint32_t count);
typedef uint32_t (*NxSizeGetFromMemFileFunc)(MemFile* file, unsigned char format, uint32_t count);
typedef int32_t (*NxTypeCmpFunc)(unsigned char format, uint32_t length1, void* value1,
                                 uint32_t length2, void* value2, unsigned short cmpOp,
                                 uint32_t count, int& status);
typedef float (*NxEvalAndBoundFunc)(NxIdxBounds* bounds, unsigned short& op, void* value,
                                    unsigned char format, uint32_t count, NxIdxBounds* narrowed);
typedef uint32_t (*NxHashFunc)(unsigned char format, uint32_t length, void* value, uint32_t count,
                               int& status);
typedef NxTypeConvertData* (*NxConvertToFunc)(void* value, uint32_t count);
typedef void* (*NxConvertFromFunc)(NxTypeConvertData* data, uint32_t count);
typedef void (*NxConstructorFunc)(void* memory, uint32_t count, uint32_t);
typedef void (*NxDestructorFunc)(void* memory, uint32_t count, uint32_t);
typedef void (*NxAssignmentFunc)(void* destination, void* source, uint32_t count, int broadcast);
typedef void (*NxCopyFunc)(void* destination, void* source, uint32_t count, int broadcast);
typedef uint32_t (*NxTranslateFunc)(void* destination, unsigned char destinationFormat,
                                    uint32_t destinationSize, void* source,
                                    unsigned char sourceFormat, uint32_t sourceSize,
                                    uint32_t count);
typedef int (*NxIsNullFunc)(void* value);
typedef int (*NxSetNullFunc)(void* value);
typedef NxString& (*NxPrintToNxStringFunc)(NxString& result, void* value, const char* format,
                                           uint32_t count);
typedef void* (*NxScanFromNxStringFunc)(void* value, NxString& text, const char* format,
                                        uint32_t count);
typedef void* (*NxDefaultValueFunc)(uint32_t count, int null);
// The form of ComparePtrGet's result, which no slot has.
typedef int (*NxComparePtr)(void*, void*);

// One row of the type table: the properties and operations of one type.
// There is one record per type in the process, shared by every table and
// every manager.
struct NxTypeDesc {
  const char* name;
  NxCreateFunc Create;
  NxDeleteFunc Delete;
  NxStoreFunc Store;
  NxLoadFunc Load;
  NxNullSizeGetFunc NullSizeGet;
  NxSizeGetFunc SizeGet;
  NxSizeGetFromMemFileFunc SizeGetFromMemFile;
  NxTypeCmpFunc Compare;
  NxEvalAndBoundFunc EvalAndBound;
  NxHashFunc Hash;
  NxConvertToFunc ConvertTo;
  NxConvertFromFunc ConvertFrom;
  NxConstructorFunc Constructor;
  NxDestructorFunc Destructor;
  NxAssignmentFunc Assignment;
  NxCopyFunc Copy;
  NxTranslateFunc Translate;
  NxIsNullFunc IsNull;
  NxSetNullFunc SetNull;
  const char* Format;
  NxPrintToNxStringFunc PrintToString;
  NxScanFromNxStringFunc ScanFromString;
  unsigned short MemLen;
  unsigned short IsFixed;
  NxDefaultValueFunc DefaultValue;
};

// The dispatch class.  It holds one of the two tables and turns a type id
// into a row; all knowledge of a type lies in the row's functions.
class NXTM_API NxTypeMgr {
 public:
  explicit NxTypeMgr(uint32_t factory = 5);

  // Factory 0 to 3: the old table, number kept.  4 to 10: the current table,
  // number kept.  11: old table, stored as 3.  12 and above: current table,
  // stored as 4.
  void SetFactory(uint32_t factory);

  // Row lookup: ids 0 to 40 index the table; every other id (negative, 41 to
  // 99, 100 and up) reaches the row `illegal`, as does an id beyond the end
  // of the old table.  In front of each of its tables the library keeps the
  // row of every id taken as an unsigned byte, so the lookup is one load.
  NxTypeDesc* RowGet(char id) const { return (table - 256)[static_cast<unsigned char>(id)]; }
  // The row `illegal` itself.
  static NxTypeDesc* IllegalRowGet();

  // Forwarders: each calls the slot of the row of `id`.
  void* Create(char id, uint32_t count) const { return Slot(RowGet(id)->Create)(count); }
  void* Delete(char id, void* value, uint32_t count) const {
    return Slot(RowGet(id)->Delete)(value, count);
  }
  void* DefaultValue(char id, uint32_t count, int null) const {
    return Slot(RowGet(id)->DefaultValue)(count, null);
  }
  uint32_t Store(char id, void* disk, const void* memory, unsigned char format,
                 uint32_t count) const {
    return Slot(RowGet(id)->Store)(disk, memory, format, count);
  }
  uint32_t Load(char id, void* memory, const void* disk, unsigned char format,
                uint32_t count) const {
    return Slot(RowGet(id)->Load)(memory, disk, format, count);
  }
  uint32_t DiskLenGet(char id, const void* value, unsigned char diskFormat, uint32_t count,
                      unsigned char valueFormat) const {
    return Slot(RowGet(id)->SizeGet)(value, valueFormat, diskFormat, count);
  }
  uint32_t DiskLenGetFromMemFile(char id, MemFile* file, unsigned char format,
                                 uint32_t count) const {
    return Slot(RowGet(id)->SizeGetFromMemFile)(file, format, count);
  }
  int32_t Cmp(char id, uint32_t length1, void* value1, uint32_t length2, void* value2,
              unsigned short cmpOp, uint32_t count, unsigned char format, int& status) const {
    return Slot(RowGet(id)->Compare)(format, length1, value1, length2, value2, cmpOp, count,
                                     status);
  }
  int32_t Cmp(char id, void* value1, void* value2, unsigned short cmpOp, uint32_t count,
              unsigned char format) const {
    int status = 0;
    return Slot(RowGet(id)->Compare)(format, 0, value1, 0, value2, cmpOp, count, status);
  }
  float EvalAndBound(char id, NxIdxBounds* bounds, unsigned short& op, void* value,
                     unsigned char format, uint32_t count, NxIdxBounds* narrowed,
                     NxEvalData* /*data*/) const {
    return Slot(RowGet(id)->EvalAndBound)(bounds, op, value, format, count, narrowed);
  }
  uint32_t Hash(char id, uint32_t length, void* value, uint32_t count, unsigned char format,
                int& status) const {
    return Slot(RowGet(id)->Hash)(format, length, value, count, status);
  }
  uint32_t Translate(char id, void* destination, unsigned char destinationFormat,
                     uint32_t destinationSize, void* source, unsigned char sourceFormat,
                     uint32_t sourceSize, uint32_t count) const {
    return Slot(RowGet(id)->Translate)(destination, destinationFormat, destinationSize, source,
                                       sourceFormat, sourceSize, count);
  }
  int IsNullValue(char id, void* value) const { return Slot(RowGet(id)->IsNull)(value); }

  // Properties.
  // 1 for ids below 41 (negative ones included) and from 100 up; 0 for 41 to
  // 99.  Does not read the table.
  static int IsValidType(char id) {
    const int i = static_cast<signed char>(id);
    return (i < 41 || i >= 100) ? 1 : 0;
  }
  // With a null buffer the row's own name; otherwise copies the name (at
  // most 15 characters and the zero) to `buffer` and returns it.
  char* NameGet(char id, char* buffer) const;
  // 0 with `id` at the row named `name` (case-sensitive), or 1 with `id` at
  // the first id past the table.
  int Name2NxTypeId(const char* name, char& id) const;
  // MemLen times `count`, cut to 16 bits.
  unsigned short MemLenGet(char id, uint32_t count = 1) const {
    return static_cast<unsigned short>(RowGet(id)->MemLen * count);
  }
  unsigned short IsFixed(char id) const { return RowGet(id)->IsFixed; }
  // `base` + `index` * MemLen; null when the table has no row for `id`, or
  // when `count` is not 0 and `index` is not below it.
  void* GetArrayElement(char id, void* base, uint32_t index, uint32_t count) const;

  // Conversion through the carrier.
  NxTypeConvertData* ConvertTo(char id, void* value, uint32_t count);
  void* ConvertFrom(char id, NxTypeConvertData* data, uint32_t count);

  // Null and default values.
  unsigned short SupportsNullValue(char id) const { return RowGet(id)->SetNull != nullptr ? 1 : 0; }
  int SetNullValue(char id, void* value);
  int DiskIsNullValue(char id, void* value) const;
  static const NxString& GetNullPrintString();
  static void SetNullPrintString(const NxString& text);

  // Print and scan.
  NxString& PrintToNxString(char id, NxString& result, void* value, const char* format,
                            uint32_t count);
  void* ScanFromNxString(char id, void* value, NxString& text, const char* format, uint32_t count);

  // Slot access: the function in the slot, or null.
  NxConstructorFunc ConstructorPtrGet(char id) const { return RowGet(id)->Constructor; }
  NxDestructorFunc DestructorPtrGet(char id) const { return RowGet(id)->Destructor; }
  NxAssignmentFunc AssignmentPtrGet(char id) const { return RowGet(id)->Assignment; }
  NxCopyFunc CopyPtrGet(char id) const { return RowGet(id)->Copy; }
  NxLoadFunc LoadPtrGet(char id) const { return RowGet(id)->Load; }
  NxStoreFunc StorePtrGet(char id) const { return RowGet(id)->Store; }
  NxIsNullFunc IsNullPtrGet(char id) const { return RowGet(id)->IsNull; }
  NxSetNullFunc SetNullPtrGet(char id) const { return RowGet(id)->SetNull; }
  NxTypeCmpFunc CmpFuncPtrGet(char id) const { return RowGet(id)->Compare; }
  // No slot has this form: always null.  The live comparison is CmpFuncPtrGet.
  NxComparePtr ComparePtrGet(char /*id*/) const { return nullptr; }

  // Slot exchange: returns the old value and writes the new one when it is
  // not null.  The row changes for every manager in the process.  A format
  // given to ExchangeFormat must outlive all use: the row keeps the pointer.
  const char* ExchangeFormat(char id, const char* format);
  NxTypeCmpFunc ExchangeNxTypeCmpFunc(char id, NxTypeCmpFunc function);
  NxPrintToNxStringFunc ExchangePrintToNxStringFunc(char id, NxPrintToNxStringFunc function);
  NxScanFromNxStringFunc ExchangeScanFromNxStringFunc(char id, NxScanFromNxStringFunc function);

  NxTypeDesc** table;  // the table in use, as SetFactory sets it
  uint16_t factory;    // the factory number after mapping

 private:
  // The function in a slot, held in a register for the call: an indirect
  // call through a register costs less than one through memory on current
  // x86 processors, and the compiler would otherwise call through the row.
  template <typename F>
  static F Slot(F function) {
#if defined(__GNUC__)
    __asm__("" : "+r"(function));
#endif
    return function;
  }

 protected:
  // The older way to carry an array as text: one string, each element closed
  // by a separator that occurs in none of them.
  NxString* ConvertToNxStringOld(void* value, char id, uint32_t count);
  // The way back; consumes `text`.
  void* ConvertFromNxStringOld(NxString* text, char id, uint32_t count);
};

// ---------------------------------------------------------------------------
// Library context and identification.

// Opens (non-zero) or closes (0) the library: opens or closes nxin, and makes
// or frees the default manager.
NXTM_API void ___NxTypemgrContext(int open);
// Returns the default manager; a non-null `replacement` becomes the new
// default, and the old one goes back to the caller unfreed.
NXTM_API NxTypeMgr* DefaultTypeMgr(NxTypeMgr* replacement);
// The options word.  Bit 0 selects how NxString reads 8-bit numbers.
NXTM_API int32_t& ___NxTypeMgrOptions();
// The base library's version check for this library's numbers.
NXTM_API int NxCheckDll(int flags);
// Writes the five version numbers, the build name, the build timestamp,
// "unknown", the tool version, the tool name and an empty text.  Returns the
// product name.
NXTM_API const char* NxDescribeDll(uint32_t* major, uint32_t* minor, uint32_t* build,
                                   uint32_t* patch, uint32_t* extra, const char** buildName,
                                   const char** buildTimestamp, const char** unknown,
                                   uint32_t* toolVersion, const char** toolName,
                                   const char** empty);
// Fills what it is given: tool name, tool version, the info text ("product
// version "), build date, build name.  Null pointers are skipped.
NXTM_API void GetNxTypeMgrInfo(const char** toolName, uint32_t* toolVersion, const char** info,
                               const char** buildDate, const char** buildName);

#endif
