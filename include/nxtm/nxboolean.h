// NxBoolean: true, false or null in one byte.
#ifndef NXTM_NXBOOLEAN_H
#define NXTM_NXBOOLEAN_H

#include <nxtm/nxtmdefs.h>

#endif
