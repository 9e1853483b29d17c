// The legacy strings NxIString and NxCaseIString.
#ifndef NXTM_NXISTRING_H
#define NXTM_NXISTRING_H

#include <nxtm/nxtmdefs.h>

#endif
