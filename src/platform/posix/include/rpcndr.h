// <rpcndr.h> for systems other than Windows: what generated headers expect of it, the basic types.
#pragma once

#include "platform/posix/types.h"
