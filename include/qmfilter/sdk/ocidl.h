// <ocidl.h> for systems other than Windows: connection points.
#pragma once

#include "qmfilter/portable/interfaces.h"
