// The standard date classes: d_Date, d_Time, d_Timestamp, d_Interval.
#ifndef NXTM_NXDCLASSES_H
#define NXTM_NXDCLASSES_H

#include <nxtm/nxtmdefs.h>

#endif
