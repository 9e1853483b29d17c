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
#include <nxtm/nxsortkey.h>
#include <nxtm/nxint64.h>
#include <nxtm/nxboolean.h>
#include <nxtm/nxnull.h>
#include <nxtm/nxdate.h>
#include <nxtm/nxdatetime.h>
#include <nxtm/nxdclasses.h>
#include <nxtm/nxobjid.h>
#include <nxtm/nxseal.h>
#include <nxtm/nxblob.h>
#include <nxtm/nxistring.h>
#include <nxtm/nxorder.h>
#include <nxtm/nxmbs.h>
#include <nxtm/nxtypevl.h>
#include <nxtm/nxtyphash.h>

#endif
