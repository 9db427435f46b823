// <objbase.h> for systems other than Windows: IUnknown, classes, streams.
#pragma once

#include "qmfilter/portable/class_table.h"
#include "qmfilter/portable/interfaces.h"
#include "qmfilter/portable/memory.h"
#include "qmfilter/portable/stream.h"
