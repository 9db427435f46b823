// <ocidl.h> for systems other than Windows: connection points.
#pragma once

#include "platform/posix/interfaces.h"
