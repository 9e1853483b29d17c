// The row of NxInt64.  Its slots are filled as the 64-bit number is built.
#include "nxrows.h"

namespace nxrows {

NxTypeDesc int64Row = IllegalLike("NxInt64", 8, 1, "%S");

}  // namespace nxrows
