// <guiddef.h> for systems other than Windows: GUIDs.
#pragma once

#include "qmfilter/portable/types.h"
