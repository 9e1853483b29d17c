// The row of NxIString.  Its slots are filled as the legacy strings are built.
#include "nxrows.h"

namespace nxrows {

NxTypeDesc iStringRow = IllegalLike("NxIString", kStringMemLen, 0, "%s");

}  // namespace nxrows
