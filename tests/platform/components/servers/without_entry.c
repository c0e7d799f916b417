/* A shared library that is no component server. */
int qmx_nothing_to_see(void);
int qmx_nothing_to_see(void) { return 0; }
