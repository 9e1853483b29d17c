// NxInt64: the exact 64-bit number of the stored world.
#ifndef NXTM_NXINT64_H
#define NXTM_NXINT64_H

#include <nxtm/nxtmdefs.h>

#endif
