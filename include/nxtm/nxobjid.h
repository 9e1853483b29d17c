// Identifiers: object numbers, class ids and references.
#ifndef NXTM_NXOBJID_H
#define NXTM_NXOBJID_H

#include <nxtm/nxtmdefs.h>

#endif
