// <olectl.h> for systems other than Windows: the connection-point status codes.
#pragma once

#include "platform/posix/interfaces.h"
