// Ends the process without the destructors of static objects.
#pragma once

[[noreturn]] void EndQuickly(int status);
