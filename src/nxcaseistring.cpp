// The row of NxCaseIString.  Its slots are filled as the legacy strings are
// built.
#include "nxkeyrows.h"
#include "nxrows.h"

namespace nxrows {

NxTypeDesc caseIStringRow =
    WithHash(IllegalLike("NxCaseIString", kStringMemLen, 0, "%s"), LegacyStringHash);

}  // namespace nxrows
