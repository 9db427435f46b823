// <shlwapi.h> for systems other than Windows: streams on files.
#pragma once

#include "qmfilter/portable/stream.h"
