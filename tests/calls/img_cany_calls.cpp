#include "korvos/segment/img_cany.h"
#include "tests/calls/calls.hpp"

call_rows img_cany_calls() { return {}; }
