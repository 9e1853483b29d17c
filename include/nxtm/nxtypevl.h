// Range evaluation: the estimate of a key range and its narrowed bounds.
#ifndef NXTM_NXTYPEVL_H
#define NXTM_NXTYPEVL_H

#include <nxtm/nxtmdefs.h>

#endif
