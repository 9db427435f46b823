// <olectl.h> for systems other than Windows: the connection-point status codes.
#pragma once

#include "qmfilter/portable/interfaces.h"
