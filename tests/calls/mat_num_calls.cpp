#include "korvos/numeric/mat_num.h"

#include "tests/calls/calls.hpp"

call_rows mat_num_calls() { return {}; }
