// <ole2.h> for systems other than Windows: classes, streams, strings, variants.
#pragma once

#include "platform/posix/bstr.h"
#include "platform/posix/class_table.h"
#include "platform/posix/interfaces.h"
#include "platform/posix/memory.h"
#include "platform/posix/stream.h"
#include "platform/posix/variant.h"
