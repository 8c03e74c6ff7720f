#include "korvos/segment/img_edge.h"
#include "tests/calls/calls.hpp"

call_rows img_edge_calls() { return {}; }
