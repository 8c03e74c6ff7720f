// Diagnostic names with empty bodies: errors reach the caller by return code only.
#include "korvos/core/ut_debug.h"

extern "C" {

int32_t korvo_msg_print(const char* /*format*/, ...) { return 0; }
void korvo_msg_print_line(const char* /*text*/) {}
void korvo_msg_print_time(const char* /*text*/) {}
void korvo_msg_set_level(int32_t /*level*/) {}
void korvo_abort(void) {}

}  // extern "C"
