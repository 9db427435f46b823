// <windows.h> for systems other than Windows: what the SDK's one includes by default.
#pragma once

#include "platform/posix/bstr.h"
#include "platform/posix/class_table.h"
#include "platform/posix/files.h"
#include "platform/posix/fonts.h"
#include "platform/posix/interfaces.h"
#include "platform/posix/memory.h"
#include "platform/posix/modules.h"
#include "platform/posix/stream.h"
#include "platform/posix/types.h"
#include "platform/posix/variant.h"
