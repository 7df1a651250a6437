// A shared library that is no client, though it begins like one.
#include "kit/vdk.h"

int32_t V_ClientAttach(const V_HostT *) { return 1; }
void V_ClientInitialize() {}
