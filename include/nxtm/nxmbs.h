// Multi-byte text: UTF-8 to and from 16-bit characters.
#ifndef NXTM_NXMBS_H
#define NXTM_NXMBS_H

#include <nxtm/nxtmdefs.h>

#endif
