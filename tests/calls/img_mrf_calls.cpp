#include "korvos/classify/img_mrf.h"

#include "tests/calls/calls.hpp"

call_rows img_mrf_calls() { return {}; }
