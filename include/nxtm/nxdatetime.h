// NxDateTime: a date and a time, local or UTC.
#ifndef NXTM_NXDATETIME_H
#define NXTM_NXDATETIME_H

#include <nxtm/nxtmdefs.h>

#endif
