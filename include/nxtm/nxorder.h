// Order naming: collation orders back to characters and words.
#ifndef NXTM_NXORDER_H
#define NXTM_NXORDER_H

#include <nxtm/nxtmdefs.h>

#endif
