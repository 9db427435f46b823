// <windows.h> for systems other than Windows: basic types.
#pragma once

#include "platform/posix/types.h"
