// Internal declarations shared by the library's source files.  Not installed.
#ifndef NXTM_SRC_NXINTERNAL_H
#define NXTM_SRC_NXINTERNAL_H

#include <nxtm/nxtm.h>

namespace detail {

// Load-time objects, defined in nxtypemgr.cpp in the order the library
// depends on: the empty string, then (after the rows) the null print string.
extern NxString emptyString;
extern NxString nullPrintString;

// The two tables, in nxtypes.cpp: the id map of a table (kTableMap
// entries) followed by the table itself (kTableRows entries, null-closed).
// NxTypeMgr::table points at `entries + kTableMap`.
constexpr size_t kTableMap = 256;
constexpr size_t kTableRows = 42;
struct TableBlock {
  NxTypeDesc* entries[kTableMap + kTableRows];
};
extern TableBlock currentTable;
extern TableBlock oldTable;

// The overflow rule of strings: asks the configuration whether to report,
// and reports through ZENTRO_assert.  `line` is the line of the check.
void ReportStringOverflow(int line);

}  // namespace detail

#endif
