// The entry points by which a host registers the library file: there is nothing to register.
#include "korvos/host/korvos.h"

extern "C" {

int32_t DllRegisterServer(void) { return 0; }
int32_t DllUnregisterServer(void) { return 0; }

}  // extern "C"
