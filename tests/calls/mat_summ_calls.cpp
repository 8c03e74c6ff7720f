#include "korvos/matrix/mat_summ.h"
#include "tests/calls/calls.hpp"

call_rows mat_summ_calls() { return {REAL_ROWS(range, args())}; }
