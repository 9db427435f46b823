// <oaidl.h> for systems other than Windows: automation types.
#pragma once

#include "qmfilter/portable/bstr.h"
#include "qmfilter/portable/interfaces.h"
#include "qmfilter/portable/variant.h"
