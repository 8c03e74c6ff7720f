// What most tests are written with.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "core/dispatch.hpp"
#include "tests/support/costs.hpp"
#include "tests/support/fenced.hpp"
#include "tests/support/forms.hpp"
#include "tests/support/heap.hpp"
#include "tests/support/levels.hpp"
