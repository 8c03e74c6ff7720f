// Conversion loops, vectorised by the compiler for each level.

template <class S, class D>
void convert(const S* in, D* out, std::int32_t n) {
  for (std::int32_t i = 0; i < n; ++i) out[i] = widened<D>(in[i]);
}

// Floating to integer: the clipped numbers cut to 32 bits by vectors, since a compiler would branch on the
// limits, and then narrowed by the compiler's own loop, a block at a time.
template <class D, class S>
[[gnu::always_inline]] inline void cut_clipped(const S* in, std::int32_t* out) {
  constexpr int n = lanes<double>;
  using number = vec<double>;
  using whole = vec<std::int32_t, n* static_cast<int>(sizeof(std::int32_t))>;
  const number lowest = number{} + lowest_of<D, double>;
  const number highest = number{} + highest_of<D, double>;
  number v = __builtin_convertvector((load<S, n* static_cast<int>(sizeof(S))>(in)), number) + 0.5;
  v = v > lowest ? v : lowest;
  v = v < highest ? v : highest;
  whole cut = __builtin_convertvector(v, whole);
  if constexpr (std::is_signed_v<D>)
    cut += __builtin_convertvector(__builtin_convertvector(cut, number) > v, whole);  // true is -1
  store(out, cut);
}

template <class S, class D>
void round_clipped(const S* in, D* out, std::int32_t n) {
  constexpr std::int32_t vectors = 4;
  constexpr std::int32_t block = vectors * lanes<double>;
  const std::int64_t last = std::int64_t{n} - block;
  for (std::int64_t start = 0; start < n; start += block) {
    const std::int64_t i = std::min(start, last);         // the last block steps back
    const S* const ahead = in + std::min(i + 256, last);  // what the processor does not fetch by itself
    std::int32_t whole[block];
    for (int u = 0; u < vectors; ++u) __builtin_prefetch(ahead + u * lanes<double>);
    for (int u = 0; u < vectors; ++u) cut_clipped<D>(in + i + u * lanes<double>, whole + u * lanes<double>);
    for (int j = 0; j < block; ++j) out[i + j] = static_cast<D>(whole[j]);
  }
}

template <class S, class D>
void convert_clipped(const S* in, D* out, std::int32_t n) {
  constexpr bool by_cutting =
      std::is_floating_point_v<S> && std::is_integral_v<D> && !std::is_same_v<D, std::uint32_t>;
  if constexpr (by_cutting) {
    if (n >= 4 * lanes<double>) return round_clipped(in, out, n);
  }
  for (std::int32_t i = 0; i < n; ++i) out[i] = clipped<D>(measured<D>(in[i]));
}

template <class S, class D>
bool all_fit(const S* in, std::int32_t n) {
  int misfits = 0;
  for (std::int32_t i = 0; i < n; ++i) misfits |= fits<D>(measured<D>(in[i])) ? 0 : 1;
  return misfits == 0;
}
