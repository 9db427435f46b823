// <objbase.h> for systems other than Windows: IUnknown, class factories, streams.
#pragma once

#include "platform/posix/stream.h"
#include "platform/posix/unknown.h"
