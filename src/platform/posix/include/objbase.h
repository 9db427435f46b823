// <objbase.h> for systems other than Windows: IUnknown, classes, streams.
#pragma once

#include "platform/posix/class_table.h"
#include "platform/posix/interfaces.h"
#include "platform/posix/memory.h"
#include "platform/posix/stream.h"
