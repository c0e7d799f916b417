#include "error_mode.h"

unsigned ErrorMode() { return 0; }
