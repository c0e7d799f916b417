#include "error_mode.h"

#include <windows.h>

unsigned ErrorMode() { return GetErrorMode(); }
