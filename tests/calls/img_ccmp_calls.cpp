#include "korvos/segment/img_ccmp.h"
#include "tests/calls/calls.hpp"

call_rows img_ccmp_calls() { return {}; }
