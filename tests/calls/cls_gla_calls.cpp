#include "korvos/classify/cls_gla.h"

#include "tests/calls/calls.hpp"

call_rows cls_gla_calls() { return {}; }
