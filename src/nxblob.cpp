// The row of NxBlob.  Its slots are filled as the blob type is built.
#include "nxrows.h"

namespace nxrows {

NxTypeDesc blobRow = IllegalLike("NxBlob", kBlobMemLen, 0, "[BLOB,len=%L]");

}  // namespace nxrows
