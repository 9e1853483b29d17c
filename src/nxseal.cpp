// The row of NxSeal.  Its slots are filled as the seal type is built.
#include "nxrows.h"

namespace nxrows {

NxTypeDesc sealRow = IllegalLike("NxSeal", 6, 1, "noop");

}  // namespace nxrows
