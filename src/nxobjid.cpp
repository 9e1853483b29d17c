// The identifier rows: NxObjId, NxClassId and NxRef.  Their slots are
// filled as the identifier family is built.
#include "nxrows.h"

namespace nxrows {

NxTypeDesc objIdRow = IllegalLike("NxObjId", 12, 1, "(%H-%L#%B)");
NxTypeDesc classIdRow = IllegalLike("NxClassId", 4, 1, "(%Cv%V)");
NxTypeDesc refRow = IllegalLike("NxRef", 20, 1, "(%D:%H-%L#%B, %C)");

}  // namespace nxrows
