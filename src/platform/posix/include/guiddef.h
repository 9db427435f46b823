// <guiddef.h> for systems other than Windows: GUIDs.
#pragma once

#include "platform/posix/types.h"
