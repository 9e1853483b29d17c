// The row of NxBoolean.  Its slots are filled as the boolean is built.
#include "nxrows.h"

namespace nxrows {

NxTypeDesc booleanRow = IllegalLike("NxBoolean", 1, 1, "noop");

}  // namespace nxrows
