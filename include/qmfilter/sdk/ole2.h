// <ole2.h> for systems other than Windows: classes, streams, strings, variants.
#pragma once

#include "qmfilter/portable/bstr.h"
#include "qmfilter/portable/class_table.h"
#include "qmfilter/portable/interfaces.h"
#include "qmfilter/portable/memory.h"
#include "qmfilter/portable/stream.h"
#include "qmfilter/portable/variant.h"
