// <rpc.h> for systems other than Windows: what generated headers expect of it, the basic types.
#pragma once

#include "qmfilter/portable/types.h"
