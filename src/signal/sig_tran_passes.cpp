// The Fourier engine: the passes, one for each factor, and their twiddles.
#include <algorithm>
#include <cmath>
#include <utility>

#include "core/arithmetic.hpp"
#include "core/levels.hpp"
#include "signal/sig_tran.hpp"

namespace korvo {
namespace {

constexpr std::int64_t strip_length = 64;

// Cosines twice, and sines with either sign, as numbers abreast are multiplied by them.
struct twiddle_strip {
  alignas(64) double cc[2 * strip_length];
  alignas(64) double ss[2 * strip_length];

  void put(std::int64_t i, double c, double s) {
    cc[2 * i] = cc[2 * i + 1] = c;
    ss[2 * i] = -s;
    ss[2 * i + 1] = s;
  }
};

// Of each span, `count` elements from `data` on of each part.
struct strip_of_spans {
  korvo_dcomplex* data;
  std::int64_t spans, span, part, count;
};

// What the outputs of a general butterfly are formed from.
struct pairs_of_inputs {
  std::int32_t factor, count;
  const double *sums, *differences;  // complex numbers
  const double *cosines, *sines;     // of the multiples of a turn / factor, 1 to factor
  korvo_dcomplex first;
};

// The rotation of one index of a pass after another: a recurrence whose drift in length is corrected. In the
// widest type: each step's rounding turns all that follow, and in double that alone would be 3e-13 in a
// transform of 2^20 elements. A step waits for the one before it, and takes no longer so.
class rotor {
 public:
  rotor(long double cd, long double sd, long double c, long double s) : cd_(cd), sd_(sd), c_(c), s_(s) {}
  double c() const { return static_cast<double>(c_); }
  double s() const { return static_cast<double>(s_); }
  void advance() {
    const long double c = c_ - (cd_ * c_ + sd_ * s_);
    const long double s = (sd_ * c_ - cd_ * s_) + s_;
    const long double g = 2.0L - (c * c + s * s);
    c_ = g * c;
    s_ = g * s;
  }

 private:
  long double cd_, sd_, c_, s_;
};

}  // namespace
}  // namespace korvo

#define KORVO_KERNELS "signal/sig_tran_kernels.inl"
#include "core/each_level.inl"

namespace korvo {
namespace {

constexpr double cost_of_pass = 10.0;
constexpr double cost_of_2 = 15.0;
constexpr double cost_of_2_rotated = 20.0;
constexpr double cost_of_flip = 10.0;
constexpr double cost_of_twiddle_2 = 25.0;
constexpr double cost_of_3 = 50.0;
constexpr double cost_of_4 = 100.0;
constexpr double cost_of_twiddle_4 = 50.0;
constexpr double cost_of_5 = 100.0;
constexpr double cost_of_rotation = 20.0;
constexpr double cost_of_table = 20.0;

constexpr double cost_of_general_product = 4.0;  // of which a pair of outputs takes factor - 1

// The rotations of `count` indices from where r stands, and r beyond them.
struct rotations_of_strip {
  double c[strip_length];
  double s[strip_length];

  void take(rotor* r, std::int64_t count) {
    for (std::int64_t i = 0; i < count; ++i, r->advance()) {
      c[i] = r->c();
      s[i] = r->s();
    }
  }
  void write(twiddle_strip* tw, std::int64_t count) const {
    for (std::int64_t i = 0; i < count; ++i) tw->put(i, c[i], s[i]);
  }
};

// Calls f(first, count) for strips of the indices from begin to end - 1.
template <class F>
code for_strips(std::int64_t begin, std::int64_t end, F f) {
  for (; begin < end; begin += strip_length) TRY(f(begin, std::min(strip_length, end - begin)));
  return KORVO_ERR_OK;
}

}  // namespace

fourier_engine::pass fourier_engine::pass_of(std::int32_t index, std::int64_t span) const {
  const std::int32_t factor = factors_.table[index];
  const long double half_turn = two_pi_ * 0.5L;
  const auto length = static_cast<long double>(span);
  const long double s = std::sin(half_turn / length);
  return {factor, span / factor, index + 1 == factors_.count, 2.0L * s * s,
          std::sin(2.0L * half_turn / length)};
}

// Spans that fit the cache together go through the rest of the passes before others begin.
code fourier_engine::do_passes(korvo_dcomplex* data, std::int64_t spans, std::int64_t span,
                               std::int32_t first) {
  if (first == factors_.count) return KORVO_ERR_OK;
  const std::int64_t together = std::max<std::int64_t>(1, in_cache / span);
  const std::int32_t factor = factors_.table[first];
  for (std::int64_t i = 0; i < spans; i += together) {
    const std::int64_t some = std::min(together, spans - i);
    TRY(do_pass(pass_of(first, span), data + i * span, some));
    TRY(do_passes(data + i * span, some * factor, span / factor, first + 1));
  }
  return KORVO_ERR_OK;
}

code fourier_engine::do_pass(const pass& p, korvo_dcomplex* data, std::int64_t spans) {
  cost_.count(cost_of_pass);
  switch (p.factor) {
    case 2:
      return do_factor_2(p, data, spans);
    case 4:
      return do_factor_4(p, data, spans);
    case 3:
      TRY(do_factor_3(p, data, spans));
      break;
    case 5:
      TRY(do_factor_5(p, data, spans));
      break;
    default:
      TRY(do_general_factor(p, data, spans));
  }
  return p.is_last ? KORVO_ERR_OK : rotate(p, data, spans);
}

// The index mirrored in the part has the same sine and the negated cosine: twiddles for a quarter of the circle
// are enough.
code fourier_engine::do_factor_2(const pass& p, korvo_dcomplex* data, std::int64_t spans) {
  const auto butterflies = KORVO_AT_LEVEL(butterflies_2);
  twiddle_strip tw;
  tw.put(0, 1.0, 0.0);
  TRY(cost_.add_steps(cost_of_2, spans));
  butterflies({data, spans, p.span(), p.part, 1}, &tw);

  rotor r(p.cd, p.sd, 1.0L - p.cd, p.sd);
  rotations_of_strip rotations;
  return for_strips(1, p.part / 2 + 1, [&](std::int64_t first, std::int64_t count) {
    rotations.take(&r, count);
    rotations.write(&tw, count);
    const std::int64_t mirrored = std::min(count, (p.part + 1) / 2 - first);  // all but the middle of the part
    for (std::int64_t i = 0; i < count; ++i) {
      TRY(cost_.add_rounds(i < mirrored ? 2 : 1, cost_of_2_rotated, spans, cost_of_flip));
      cost_.count(cost_of_twiddle_2);
    }
    butterflies({data + first, spans, p.span(), p.part, count}, &tw);
    if (mirrored == 0) return KORVO_ERR_OK;
    for (std::int64_t i = 0; i < mirrored; ++i) tw.put(mirrored - 1 - i, -rotations.c[i], rotations.s[i]);
    butterflies({data + p.part - (first + mirrored - 1), spans, p.span(), p.part, mirrored}, &tw);
    return KORVO_ERR_OK;
  });
}

code fourier_engine::do_factor_4(const pass& p, korvo_dcomplex* data, std::int64_t spans) {
  const auto butterflies = KORVO_AT_LEVEL(butterflies_4);
  rotor r(p.cd, p.sd, 1.0L, 0.0L);
  rotations_of_strip rotations;
  twiddle_strip tw[3];
  return for_strips(0, p.part, [&](std::int64_t first, std::int64_t count) {
    rotations.take(&r, count);
    for (std::int64_t i = 0; i < count; ++i) {
      const double c = rotations.c[i], s = rotations.s[i];
      const double c2 = c * c - s * s, s2 = 2.0 * c * s;
      tw[0].put(i, c, s);
      tw[1].put(i, c2, s2);
      tw[2].put(i, c2 * c - s2 * s, c2 * s + s2 * c);
    }
    TRY(cost_.add_rounds(count, cost_of_4, spans, cost_of_twiddle_4));
    butterflies({data + first, spans, p.span(), p.part, count}, tw, static_cast<double>(direction_));
    return KORVO_ERR_OK;
  });
}

code fourier_engine::do_factor_3(const pass& p, korvo_dcomplex* data, std::int64_t spans) {
  const auto butterflies = KORVO_AT_LEVEL(butterflies_3);
  return for_strips(0, p.part, [&](std::int64_t first, std::int64_t count) {
    TRY(cost_.add_steps(cost_of_3, count * spans));
    butterflies({data + first, spans, p.span(), p.part, count}, sin_60_);
    return KORVO_ERR_OK;
  });
}

code fourier_engine::do_factor_5(const pass& p, korvo_dcomplex* data, std::int64_t spans) {
  const auto butterflies = KORVO_AT_LEVEL(butterflies_5);
  return for_strips(0, p.part, [&](std::int64_t first, std::int64_t count) {
    TRY(cost_.add_steps(cost_of_5, count * spans));
    butterflies({data + first, spans, p.span(), p.part, count}, cos_72_, sin_72_);
    return KORVO_ERR_OK;
  });
}

// Cosines and sines of the multiples of a turn / factor, from both ends: each from the one before by a
// rotation, and its mirror image. In the widest type, since errors add up along the table.
void fourier_engine::make_table(std::int32_t factor) {
  if (factor == table_factor_) return;
  table_factor_ = factor;
  const long double angle = static_cast<long double>(two_pi_) / factor;
  const long double c1 = std::cos(angle), s1 = std::sin(angle);
  long double c = 1.0L, s = 0.0L;
  cosines_[factor] = 1.0;
  sines_[factor] = 0.0;
  for (std::int32_t i = 1, mirrored = factor - 1; i <= mirrored; ++i, --mirrored) {
    const long double next = c * c1 - s * s1;
    s = c * s1 + s * c1;
    c = next;
    cosines_[i] = cosines_[mirrored] = static_cast<double>(c);
    sines_[i] = static_cast<double>(s);
    sines_[mirrored] = -sines_[i];
  }
  cost_.count(cost_of_table + factor);
}

code fourier_engine::do_general_factor(const pass& p, korvo_dcomplex* data, std::int64_t spans) {
  if (p.factor >= factors_.largest_plus_1) return KORVO_ERR_ILLEGAL_SIZE;
  make_table(p.factor);
  for (std::int64_t i = 0; i < spans; ++i)
    for (std::int64_t j = 0; j < p.part; ++j) TRY(general_butterfly(p, data + i * p.span() + j));
  return KORVO_ERR_OK;
}

// The first output is the sum of all inputs; the others come in pairs, from sums and differences of the inputs
// that mirror each other.
code fourier_engine::general_butterfly(const pass& p, korvo_dcomplex* x) {
  const auto do_pairs = KORVO_AT_LEVEL(general_pairs);
  const std::int32_t pairs = p.factor / 2;
  const korvo_dcomplex first = x[0];
  korvo_dcomplex all = first;
  for (std::int32_t k = 0; k < pairs; ++k) {
    const korvo_dcomplex a = x[(k + 1) * p.part], b = x[(p.factor - k - 1) * p.part];
    const korvo_dcomplex sum_of_pair = sum(a, b), difference_of_pair = difference(a, b);
    sums_[2 * k] = sum_of_pair.re, sums_[2 * k + 1] = sum_of_pair.im;
    differences_[2 * k] = difference_of_pair.re, differences_[2 * k + 1] = difference_of_pair.im;
    all = sum(all, sum_of_pair);
  }
  x[0] = all;
  const pairs_of_inputs inputs = {p.factor,        pairs,         sums_.data(), differences_.data(),
                                  cosines_.data(), sines_.data(), first};
  return for_strips(1, pairs + 1, [&](std::int64_t j, std::int64_t count) {
    TRY(cost_.add_steps(cost_of_general_product * (p.factor - 1), count));
    do_pairs(inputs, static_cast<std::int32_t>(j), static_cast<std::int32_t>(count), x, p.part);
    return KORVO_ERR_OK;
  });
}

// The rotations that factors 2 and 4 merge into their butterflies: part m of a span by m times the angle of the
// index.
code fourier_engine::rotate(const pass& p, korvo_dcomplex* data, std::int64_t spans) {
  const auto rotate_part = KORVO_AT_LEVEL(rotations);
  rotor r(p.cd, p.sd, 1.0L - p.cd, p.sd);
  rotations_of_strip single;
  twiddle_strip tw;
  return for_strips(1, p.part, [&](std::int64_t first, std::int64_t count) {
    single.take(&r, count);
    rotations_of_strip multiple = single;
    for (std::int32_t m = 1; m < p.factor; ++m) {
      TRY(cost_.add_steps(cost_of_rotation, count * spans));
      multiple.write(&tw, count);
      rotate_part({data + m * p.part + first, spans, p.span(), p.part, count}, &tw);
      for (std::int64_t i = 0; i < count; ++i) {
        const double ss = single.s[i] * multiple.s[i];
        multiple.s[i] = single.s[i] * multiple.c[i] + single.c[i] * multiple.s[i];
        multiple.c[i] = single.c[i] * multiple.c[i] - ss;
      }
    }
    return KORVO_ERR_OK;
  });
}

}  // namespace korvo
