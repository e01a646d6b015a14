/// \file
/// Everything: the public headers of the three libraries.
///
/// Start with vqtypes.h, the type manager, when values are known by type only; with vqstring.h and the value classes
/// when they are known by class; with vqbase.h for byte orders, and vqlanguagecontext.h for code sets and languages.
#ifndef VQTM_H
#define VQTM_H

// The base library
#include "byteorder.h"
#include "clock.h"
#include "memfile.h"
#include "memoryhandler.h"
#include "vqassert.h"
#include "vqbase.h"
#include "vqbasedefs.h"
#include "vqconfig.h"
#include "vqversion.h"

// The internationalisation library
#include "vqcase.h"
#include "vqcodeset.h"
#include "vqcollation.h"
#include "vqi18ndefs.h"
#include "vqlanguagecontext.h"

// The type library
#include "_vqnulty.h"
#include "blob.h"
#include "boolean.h"
#include "charoperation.h"
#include "convert.h"
#include "date.h"
#include "datetime.h"
#include "library.h"
#include "multibyte.h"
#include "objid.h"
#include "order.h"
#include "ref.h"
#include "seal.h"
#include "stddate.h"
#include "strcompare.h"
#include "strhash.h"
#include "stringiterator.h"
#include "textform.h"
#include "vqchar.h"
#include "vqdefs.h"
#include "vqint64.h"
#include "vqistring.h"
#include "vqnull.h"
#include "vqslots.h"
#include "vqstd.h"
#include "vqstring.h"
#include "vqtmdefs.h"
#include "vqtypcmp.h"
#include "vqtypes.h"
#include "vqtypevl.h"
#include "vqtyphash.h"

#endif
