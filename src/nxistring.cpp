// The row of NxIString.  Its slots are filled as the legacy strings are built.
#include "nxkeyrows.h"
#include "nxrows.h"

namespace nxrows {

NxTypeDesc iStringRow =
    WithHash(IllegalLike("NxIString", kStringMemLen, 0, "%s"), LegacyStringHash);

}  // namespace nxrows
