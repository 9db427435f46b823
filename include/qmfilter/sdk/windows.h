// <windows.h> for systems other than Windows: what the SDK's one includes by default.
#pragma once

#include "qmfilter/portable/bstr.h"
#include "qmfilter/portable/class_table.h"
#include "qmfilter/portable/files.h"
#include "qmfilter/portable/fonts.h"
#include "qmfilter/portable/interfaces.h"
#include "qmfilter/portable/memory.h"
#include "qmfilter/portable/modules.h"
#include "qmfilter/portable/stream.h"
#include "qmfilter/portable/types.h"
#include "qmfilter/portable/variant.h"
