#include "korvos/image/img_gmor.h"
#include "tests/calls/calls.hpp"

call_rows img_gmor_calls() { return {}; }
