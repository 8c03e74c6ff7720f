#include "korvos/matrix/mat_sort.h"
#include "tests/calls/calls.hpp"

call_rows mat_sort_calls() { return {}; }
