#include "korvos/image/img_morp.h"
#include "tests/calls/calls.hpp"

call_rows img_morp_calls() { return {}; }
