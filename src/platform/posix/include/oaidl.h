// <oaidl.h> for systems other than Windows: automation types.
#pragma once

#include "platform/posix/bstr.h"
#include "platform/posix/interfaces.h"
#include "platform/posix/variant.h"
