// NxBlob: a binary value of any length.
#ifndef NXTM_NXBLOB_H
#define NXTM_NXBLOB_H

#include <nxtm/nxtmdefs.h>

#endif
