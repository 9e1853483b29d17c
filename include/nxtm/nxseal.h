// NxSeal: a 48-bit number that sorts as bytes.
#ifndef NXTM_NXSEAL_H
#define NXTM_NXSEAL_H

#include <nxtm/nxtmdefs.h>

#endif
