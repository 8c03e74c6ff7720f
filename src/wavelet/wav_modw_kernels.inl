// The sums of one level, four vectors of instants abreast: each sum takes its taps in their order.
//
// A block of instants is read as one run from its first instant, so a series that ends is continued past its
// end by `margin` elements of its beginning.

// The instants from t on, vectors * bytes / 8 of them.
template <int bytes, int vectors>
[[gnu::always_inline]] inline void analyse_block(const stage& at, const double* series, std::int64_t t,
                                                 double* wavelet, double* scaling) {
  constexpr int width = bytes / 8;
  static_assert(vectors * width <= margin + 1);
  vec<double, bytes> wavelet_sums[vectors] = {};
  vec<double, bytes> scaling_sums[vectors] = {};
  for (std::int64_t l = 0; l < at.length; ++l) {
    for (int k = 0; k < vectors; ++k) {
      const auto x = load<double, bytes>(series + t + k * width);
      wavelet_sums[k] += at.wavelet[l] * x;
      scaling_sums[k] += at.scaling[l] * x;
    }
    t -= at.step;
    if (t < 0) t += at.period;
  }
  for (int k = 0; k < vectors; ++k) {
    store(wavelet + k * width, wavelet_sums[k]);
    store(scaling + k * width, scaling_sums[k]);
  }
}

template <int bytes, int vectors>
[[gnu::always_inline]] inline void synthesise_block(const stage& at, const double* approximation,
                                                    const double* detail, std::int64_t t, double* out) {
  constexpr int width = bytes / 8;
  vec<double, bytes> sums[vectors] = {};
  for (std::int64_t l = 0; l < at.length; ++l) {
    for (int k = 0; k < vectors; ++k)
      sums[k] += at.scaling[l] * load<double, bytes>(approximation + t + k * width) +
                 at.wavelet[l] * load<double, bytes>(detail + t + k * width);
    t += at.step;
    if (t >= at.period) t -= at.period;
  }
  for (int k = 0; k < vectors; ++k) store(out + k * width, sums[k]);
}

// Both crystals at `count` instants from `first` on, of a series that lies from instant 0 on. The last block
// steps back and overlaps the one before it.
void analyse(const stage& at, const double* series, std::int64_t first, std::int64_t count, double* wavelet,
             double* scaling) {
  constexpr std::int64_t block = 4 * lanes<double>;
  std::int64_t i = 0;
  if (count < block)
    for (; i < count; ++i) analyse_block<8, 1>(at, series, first + i, wavelet + i, scaling + i);
  for (; i < count; i += block) {
    const std::int64_t k = i < count - block ? i : count - block;
    analyse_block<KORVO_VECTOR_BYTES, 4>(at, series, first + k, wavelet + k, scaling + k);
  }
}

// The approximation one level finer, in the same way.
void synthesise(const stage& at, const double* approximation, const double* detail, std::int64_t first,
                std::int64_t count, double* out) {
  constexpr std::int64_t block = 4 * lanes<double>;
  std::int64_t i = 0;
  if (count < block)
    for (; i < count; ++i) synthesise_block<8, 1>(at, approximation, detail, first + i, out + i);
  for (; i < count; i += block) {
    const std::int64_t k = i < count - block ? i : count - block;
    synthesise_block<KORVO_VECTOR_BYTES, 4>(at, approximation, detail, first + k, out + k);
  }
}

// Two lines of `count` elements become two columns of rows that lie `stride` apart.
void write_pair(const double* left, const double* right, std::int64_t count, double* rows,
                std::int64_t stride) {
  std::int64_t i = 0;
  for (; i + 2 <= count; i += 2) {
    const auto x = load<double, 16>(left + i);
    const auto y = load<double, 16>(right + i);
    store(rows + i * stride, __builtin_shufflevector(x, y, 0, 2));
    store(rows + (i + 1) * stride, __builtin_shufflevector(x, y, 1, 3));
  }
  if (i == count) return;
  rows[i * stride] = left[i];
  rows[i * stride + 1] = right[i];
}
