// NxDate and NxTime: calendar dates and times of day.
#ifndef NXTM_NXDATE_H
#define NXTM_NXDATE_H

#include <nxtm/nxtmdefs.h>

#endif
