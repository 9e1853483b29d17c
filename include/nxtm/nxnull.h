// The null-capable scalars: a plain number and a null flag.
#ifndef NXTM_NXNULL_H
#define NXTM_NXNULL_H

#include <nxtm/nxtmdefs.h>

#endif
