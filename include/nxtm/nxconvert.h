// NxTypeConvertData: the heap carrier of an array of values on the way
// between types.
#ifndef NXTM_NXCONVERT_H
#define NXTM_NXCONVERT_H

#include <nxtm/nxtmdefs.h>

class NXTM_API NxTypeConvertData {
 public:
  // A new carrier with these fields, or null when no memory is left.  A
  // carrier with a manager frees `data` through it when it dies.
  static NxTypeConvertData* Make(char type, uint32_t count, void* data, NxTypeMgr* typeMgr);
  ~NxTypeConvertData();
  NxTypeConvertData(const NxTypeConvertData&) = delete;
  NxTypeConvertData& operator=(const NxTypeConvertData&) = delete;

  // String number `index`, or null when the carrier holds no strings or
  // `index` is not below `count`.
  NxString* GetString(int index);

  NxTypeMgr* typeMgr;  // the manager that frees `data`, or null
  void* data;          // the array, as the Create of row `type` gave it
  uint32_t count;      // elements
  char type;           // type id of the elements; 100 when empty

 private:
  NxTypeConvertData(char type, uint32_t count, void* data, NxTypeMgr* typeMgr);
};

#endif
