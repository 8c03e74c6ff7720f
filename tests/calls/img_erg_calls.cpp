#include "korvos/segment/img_erg.h"
#include "tests/calls/calls.hpp"

call_rows img_erg_calls() { return {}; }
