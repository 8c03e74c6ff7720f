#include "korvos/matrix/mat_thr.h"
#include "tests/calls/calls.hpp"

call_rows mat_thr_calls() { return {}; }
