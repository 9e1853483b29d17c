// nxtm: the type manager.  The umbrella header: the whole public API with the
// platform interfaces that callers use.
#ifndef NXTM_NXTM_H
#define NXTM_NXTM_H

#include <nxbs/nxbs.h>
#include <nxin/nxin.h>

#include <nxtm/nxtmdefs.h>
#include <nxtm/nxtypemgr.h>
#include <nxtm/nxtypcmp.h>
#include <nxtm/nxconvert.h>
#include <nxtm/nxchar.h>
#include <nxtm/nxstriter.h>
#include <nxtm/nxstring.h>

#endif
