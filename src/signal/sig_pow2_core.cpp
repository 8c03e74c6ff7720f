// The split-radix Hartley transform: table, stages, bit reversal.
#include <bit>
#include <cmath>
#include <cstdint>
#include <utility>

#include "core/checkpoint.hpp"
#include "core/loop.hpp"
#include "signal/sig_pow2.hpp"

namespace korvo {
namespace {

constexpr double two_pi = 6.283185307179586;
constexpr double root_of_half = 0.707106781186547;
constexpr double root_of_two = 1.414213562373095;

// Four runs of n / 8 - 1: cos kx, sin kx, cos 3kx, sin 3kx, k from 1.
void make_table(double* table, std::int64_t n) {
  const std::int64_t run = n / 8 - 1;
  const double x = two_pi / static_cast<double>(n);
  table[0] = static_cast<double>(n);
  for (std::int64_t k = 1; k <= run; ++k) {
    const double once = static_cast<double>(k) * x;
    const double thrice = static_cast<double>(3 * k) * x;
    table[k] = std::cos(once);
    table[run + k] = std::sin(once);
    table[2 * run + k] = std::cos(thrice);
    table[3 * run + k] = std::sin(thrice);
  }
}

void transform_pair(double* x) {
  const double a = x[0];
  const double b = x[1];
  x[0] = (a + b) * root_of_half;
  x[1] = (a - b) * root_of_half;
}

void transform_four(double* x) {
  const double even = (x[0] + x[2]) * 0.5;
  const double even_difference = (x[0] - x[2]) * 0.5;
  const double odd = (x[1] + x[3]) * 0.5;
  const double odd_difference = (x[1] - x[3]) * 0.5;
  x[0] = even + odd;
  x[1] = even_difference + odd_difference;
  x[2] = even - odd;
  x[3] = even_difference - odd_difference;
}

// The division of each stage is done on the way: the first half of a group is divided once, and its third and
// fourth quarter, which sit out the next stage, for that one too. So each element is rounded as by a pass of
// divisions after every stage.
double scaled(double x) { return x / root_of_two; }
double scaled_twice(double x) { return x / root_of_two / root_of_two; }

// The four runs of the table, and how far apart a stage's entries lie.
struct rotations {
  const double* table;
  std::int64_t run;
  std::int64_t stride;
};

// The sums of an element and of those one, two and three quarters on stay in place; what is left of them are
// the differences.
struct differences {
  double even, odd;
};
differences take_sums(double* x, std::int64_t quarter) {
  const double x0 = x[0];
  const double x1 = x[quarter];
  const double x2 = x[2 * quarter];
  const double x3 = x[3 * quarter];
  x[0] = scaled(x0 + x2);
  x[quarter] = scaled(x1 + x3);
  return {x0 - x2, x1 - x3};
}

void split_group(double* x, std::int64_t size, const rotations& turns) {
  const std::int64_t quarter = size / 4;
  const std::int64_t eighth = size / 8;
  double* const third = x + 2 * quarter;
  double* const fourth = x + 3 * quarter;
  const differences first = take_sums(x, quarter);
  third[0] = scaled_twice(first.even + first.odd);
  fourth[0] = scaled_twice(first.even - first.odd);
  if (eighth == 0) return;
  const differences middle = take_sums(x + eighth, quarter);
  third[eighth] = scaled_twice(middle.even * root_of_two);
  fourth[eighth] = scaled_twice(middle.odd * root_of_two);
  const double* const table = turns.table;
  const std::int64_t run = turns.run;
  const std::int64_t stride = turns.stride;
  KORVO_INDEPENDENT
  for (std::int64_t k = 1; k < eighth; ++k) {
    const differences here = take_sums(x + k, quarter);
    const differences there = take_sums(x + (quarter - k), quarter);
    const double cos1 = table[k * stride];
    const double sin1 = table[run + k * stride];
    const double cos3 = table[2 * run + k * stride];
    const double sin3 = table[3 * run + k * stride];
    const double even_sum = here.even + there.even;
    const double odd_difference = here.odd - there.odd;
    const double even_difference = here.even - there.even;
    const double odd_sum = here.odd + there.odd;
    third[k] = scaled_twice(cos1 * even_sum - sin1 * odd_difference);
    third[quarter - k] = scaled_twice(sin1 * even_sum + cos1 * odd_difference);
    fourth[k] = scaled_twice(cos3 * even_difference + sin3 * odd_sum);
    fourth[quarter - k] = scaled_twice(sin3 * even_difference - cos3 * odd_sum);
  }
}

void join_pair(double* x) {
  const double a = x[0];
  const double b = x[1];
  x[0] = scaled(a + b);
  x[1] = scaled(a - b);
}

// One stage of groups of `size`: they lie where the halves and quarters of larger groups have left them, the
// L-shaped pattern, in runs of one distance each.
template <class Group>
code each_group(double* x, std::int64_t n, std::int64_t size, double group_cost, checkpoint& cost,
                Group group) {
  std::int64_t step = 2 * size;
  for (std::int64_t start = 0; start < n; start = 2 * step - size, step *= 4) {
    std::int64_t at = start;
    for (auto left = static_cast<std::int32_t>((n - start + step - 1) / step); left > 0;) {
      const std::int32_t strip = cost.strip(group_cost, left);
      for (std::int32_t i = 0; i < strip; ++i, at += step) group(x + at);
      TRY(cost.add_strip(group_cost, strip));
      left -= strip;
    }
  }
  return KORVO_ERR_OK;
}

// Counts up on the one side, and with the bits reversed on the other.
void reverse_bits(double* x, std::int64_t n) {
  std::int64_t j = 0;
  for (std::int64_t i = 0; i < n - 1; ++i) {
    if (i < j) std::swap(x[i], x[j]);
    j ^= n - (n >> (std::countr_zero(static_cast<std::uint64_t>(i + 1)) + 1));
  }
}

}  // namespace

code hartley(double* x, std::int64_t n, double* table, void* intrp_ptr) {
  if (n == 1) return KORVO_ERR_OK;
  if (n == 2) return transform_pair(x), KORVO_ERR_OK;
  if (n == 4) return transform_four(x), KORVO_ERR_OK;
  if (static_cast<std::int64_t>(table[0]) != n) make_table(table, n);
  checkpoint cost(intrp_ptr);
  const double scaling_cost = 5.0 * static_cast<double>(n);
  for (std::int64_t size = n; size >= 4; size /= 2) {
    const rotations turns = {table, n / 8 - 1, n / size};
    const std::int64_t blocks = size / 16;
    const double group_cost = 40.0 + 120.0 * static_cast<double>(blocks);
    TRY(each_group(x, n, size, group_cost, cost, [&](double* group) { split_group(group, size, turns); }));
    cost.count(scaling_cost);
  }
  TRY(each_group(x, n, 2, 20.0, cost, join_pair));
  reverse_bits(x, n);
  return KORVO_ERR_OK;
}

}  // namespace korvo
