// Butterflies on spans of several parts: the same element of each part together, adjacent elements abreast.

template <int bytes, int... lane>
[[gnu::always_inline]] inline vec<double, bytes> swap_parts(vec<double, bytes> x,
                                                            std::integer_sequence<int, lane...>) {
  return __builtin_shufflevector(x, x, (lane ^ 1)...);
}

// Complex numbers abreast, real and imaginary parts by turns.
template <int bytes>
struct numbers {
  using V = vec<double, bytes>;

  [[gnu::always_inline]] static V at(const korvo_dcomplex* x) { return load<double, bytes>(x); }
  // (x.im, x.re) of each.
  [[gnu::always_inline]] static V swapped(V x) {
    return swap_parts<bytes>(x, std::make_integer_sequence<int, bytes / 8>{});
  }
  // factor * i * x of each: the product with (-factor, factor) is exact in its sign.
  [[gnu::always_inline]] static V turned(V x, double factor) {
    V by;
    for (int k = 0; k < bytes / 8; ++k) by[k] = k % 2 == 0 ? -factor : factor;
    return swapped(x) * by;
  }
  [[gnu::always_inline]] static V rotated(V x, const twiddle_strip& tw, std::int64_t i) {
    return x * load<double, bytes>(tw.cc + 2 * i) + swapped(x) * load<double, bytes>(tw.ss + 2 * i);
  }
  // The same, but numbers whose sine is 0 stay as they are.
  [[gnu::always_inline]] static V rotated_or_kept(V x, const twiddle_strip& tw, std::int64_t i) {
    return load<double, bytes>(tw.ss + 2 * i) == 0.0 ? x : rotated(x, tw, i);
  }
  template <bool may_keep>
  [[gnu::always_inline]] static void put(korvo_dcomplex* to, V x, const twiddle_strip& tw, std::int64_t i) {
    store(to + i, may_keep ? rotated_or_kept(x, tw, i) : rotated(x, tw, i));
  }
};

// Calls one.at<bytes, may_keep>(i) for the elements 0 to count - 1 of one span, as many at a time as there are
// lanes for. Only twiddle 0 can be one that keeps its number.
template <class Butterfly>
[[gnu::always_inline]] inline void for_elements(std::int64_t count, Butterfly one) {
  constexpr std::int64_t wide = KORVO_VECTOR_BYTES / 16;
  std::int64_t i = 0;
  if (count >= wide) {
    one.template at<KORVO_VECTOR_BYTES, true>(0);
    for (i = wide; i + wide <= count; i += wide) one.template at<KORVO_VECTOR_BYTES, false>(i);
  } else {
    one.template at<16, true>(0);
    i = 1;
  }
  for (; i < count; ++i) one.template at<16, false>(i);
}

// The elements of each span that have a twiddle in the strip; `part` is the distance between parts.
template <class Butterfly>
[[gnu::always_inline]] inline void for_spans(const strip_of_spans& s, Butterfly first) {
  for (std::int64_t b = 0; b < s.spans; ++b, first.x += s.span) for_elements(s.count, first);
}

struct butterfly_2 {
  korvo_dcomplex* x;
  std::int64_t part;
  const twiddle_strip* tw;

  template <int bytes, bool may_keep>
  [[gnu::always_inline]] void at(std::int64_t i) const {
    using N = numbers<bytes>;
    const auto a = N::at(x + i), b = N::at(x + part + i);
    store(x + i, a + b);
    N::template put<may_keep>(x + part, a - b, *tw, i);
  }
};

struct butterfly_3 {
  korvo_dcomplex* x;
  std::int64_t part;
  double sin_60;

  template <int bytes, bool>
  [[gnu::always_inline]] void at(std::int64_t i) const {
    using N = numbers<bytes>;
    const auto a = N::at(x + i), b = N::at(x + part + i), c = N::at(x + 2 * part + i);
    const auto sum = b + c;
    const auto middle = sum * -0.5 + a;
    const auto turned = N::turned(b - c, sin_60);
    store(x + i, a + sum);
    store(x + part + i, middle + turned);
    store(x + 2 * part + i, middle - turned);
  }
};

struct butterfly_4 {
  korvo_dcomplex* x;
  std::int64_t part;
  const twiddle_strip* tw;  // of the first, second and third powers
  double direction;

  template <int bytes, bool may_keep>
  [[gnu::always_inline]] void at(std::int64_t i) const {
    using N = numbers<bytes>;
    const auto a = N::at(x + i), b = N::at(x + part + i), c = N::at(x + 2 * part + i);
    const auto d = N::at(x + 3 * part + i);
    const auto even_sum = a + c, even_difference = a - c, odd_sum = b + d;
    const auto odd_difference = N::turned(b - d, direction);
    store(x + i, even_sum + odd_sum);
    N::template put<may_keep>(x + part, even_difference + odd_difference, tw[0], i);
    N::template put<may_keep>(x + 2 * part, even_sum - odd_sum, tw[1], i);
    N::template put<may_keep>(x + 3 * part, even_difference - odd_difference, tw[2], i);
  }
};

struct butterfly_5 {
  korvo_dcomplex* x;
  std::int64_t part;
  double cos_72, sin_72, cos_144, sin_144;

  template <int bytes, bool>
  [[gnu::always_inline]] void at(std::int64_t i) const {
    using N = numbers<bytes>;
    const auto a = N::at(x + i), b = N::at(x + part + i), c = N::at(x + 2 * part + i);
    const auto d = N::at(x + 3 * part + i), e = N::at(x + 4 * part + i);
    const auto outer_sum = b + e, outer_difference = b - e, inner_sum = c + d, inner_difference = c - d;
    store(x + i, a + outer_sum + inner_sum);
    const auto near = outer_sum * cos_72 + inner_sum * cos_144 + a;
    const auto near_turned = N::turned(outer_difference, sin_72) + N::turned(inner_difference, sin_144);
    store(x + part + i, near + near_turned);
    store(x + 4 * part + i, near - near_turned);
    const auto far = outer_sum * cos_144 + inner_sum * cos_72 + a;
    const auto far_turned = N::turned(outer_difference, sin_144) - N::turned(inner_difference, sin_72);
    store(x + 2 * part + i, far + far_turned);
    store(x + 3 * part + i, far - far_turned);
  }
};

struct rotation {
  korvo_dcomplex* x;
  const twiddle_strip* tw;

  template <int bytes, bool>
  [[gnu::always_inline]] void at(std::int64_t i) const {
    numbers<bytes>::template put<false>(x, numbers<bytes>::at(x + i), *tw, i);
  }
};

static void butterflies_2(const strip_of_spans& s, const twiddle_strip* tw) {
  for_spans(s, butterfly_2{s.data, s.part, tw});
}
static void butterflies_3(const strip_of_spans& s, double sin_60) {
  for_spans(s, butterfly_3{s.data, s.part, sin_60});
}
static void butterflies_4(const strip_of_spans& s, const twiddle_strip* tw, double direction) {
  for_spans(s, butterfly_4{s.data, s.part, tw, direction});
}
static void butterflies_5(const strip_of_spans& s, double cos_72, double sin_72) {
  const double cos_144 = cos_72 * cos_72 - sin_72 * sin_72;
  const double sin_144 = 2.0 * cos_72 * sin_72;
  for_spans(s, butterfly_5{s.data, s.part, cos_72, sin_72, cos_144, sin_144});
}
static void rotations(const strip_of_spans& s, const twiddle_strip* tw) { for_spans(s, rotation{s.data, tw}); }

// Output pairs (j, factor - j) of a general butterfly, n of them abreast: sums of products with the table, in
// the order of the inputs, the table index stepping by j modulo the factor.
template <int n>
[[gnu::always_inline]] inline void general_outputs(const pairs_of_inputs& in, std::int32_t j, korvo_dcomplex* x,
                                                   std::int64_t part) {
  using V = vec<double, 16>;
  V even[n], odd[n];
  std::int32_t at[n];
  for (int u = 0; u < n; ++u) even[u] = load<double, 16>(&in.first), odd[u] = V{}, at[u] = j + u;
  for (std::int32_t k = 0; k < in.count; ++k) {
    const V sum = load<double, 16>(in.sums + 2 * k), difference = load<double, 16>(in.differences + 2 * k);
    for (int u = 0; u < n; ++u) {
      even[u] += sum * in.cosines[at[u]];
      odd[u] += difference * in.sines[at[u]];
      at[u] += j + u;
      if (at[u] > in.factor) at[u] -= in.factor;
    }
  }
  for (int u = 0; u < n; ++u) {
    const V turned = numbers<16>::turned(odd[u], 1.0);
    store(x + (j + u) * part, even[u] + turned);
    store(x + (in.factor - j - u) * part, even[u] - turned);
  }
}

static void general_pairs(const pairs_of_inputs& in, std::int32_t j, std::int32_t count, korvo_dcomplex* x,
                          std::int64_t part) {
  for (; count >= 4; count -= 4, j += 4) general_outputs<4>(in, j, x, part);
  for (; count > 0; --count, ++j) general_outputs<1>(in, j, x, part);
}
