#pragma once
#include "VELA_Format.h"

// Default display format shared by the procedure's units.
const VELA_Format kDefaultFormat = VELA_Format(5, 8, 2);
