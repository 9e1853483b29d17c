// Hashing of values in memory and disk form.
#ifndef NXTM_NXTYPHASH_H
#define NXTM_NXTYPHASH_H

#include <nxtm/nxtmdefs.h>

#endif
