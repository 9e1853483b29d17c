// The temporal rows: NxDate, NxTime, NxDateTime and the standard date
// classes.  Their slots are filled as the date family is built.
#include "nxrows.h"

namespace nxrows {

NxTypeDesc dateRow = IllegalLike("NxDate", 4, 1, "%a %e.%b %Y");
NxTypeDesc timeRow = IllegalLike("NxTime", 3, 1, "%I:%M:%S %p");
NxTypeDesc dateTimeRow = IllegalLike("NxDateTime", 8, 1, "%a %e.%b %Y %I:%M:%S %p");
NxTypeDesc dDateRow = IllegalLike("d_Date", 4, 1, "%a %b %e");
NxTypeDesc dTimeRow = IllegalLike("d_Time", 6, 1, "%I:%M:%S %p");
NxTypeDesc dTimestampRow = IllegalLike("d_Timestamp", 10, 1, "%a %b %e %I:%M:%S %p");

}  // namespace nxrows
