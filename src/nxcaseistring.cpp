// The row of NxCaseIString.  Its slots are filled as the legacy strings are
// built.
#include "nxrows.h"

namespace nxrows {

NxTypeDesc caseIStringRow = IllegalLike("NxCaseIString", kStringMemLen, 0, "%s");

}  // namespace nxrows
