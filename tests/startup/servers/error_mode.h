// Which messages of failures Windows leaves out in this process: the bits of SetErrorMode. 0 on other systems.
#pragma once

unsigned ErrorMode();
