// Correlation: adjacent outputs abreast, their sums in registers, each in the order of the taps.

// The lanes that sums are formed in. Integers are a ring, so signed ones are summed as unsigned ones.
template <class T>
struct lane_of {
  using type = T;
};
template <>
struct lane_of<std::int32_t> {
  using type = std::uint32_t;
};

// The sums of `width` adjacent outputs, held in n vectors.
template <class T, int n>
struct sums {
  using lane = typename lane_of<T>::type;
  static constexpr int width = n * lanes<lane>;

  vec<lane> s[n] = {};

  // Adds, tap by tap, the samples from tap c on times taps[c * tap_step].
  [[gnu::always_inline]] void add(const T* samples, const T* taps, std::int64_t tap_step, std::int64_t count) {
    for (std::int64_t c = 0; c < count; ++c) {
      const lane tap = static_cast<lane>(taps[c * tap_step]);
      for (int u = 0; u < n; ++u) s[u] += load<lane>(samples + c + u * lanes<lane>) * tap;
    }
  }
  [[gnu::always_inline]] void write(T* out) const {
    for (int u = 0; u < n; ++u) store(out + u * lanes<lane>, s[u]);
  }
};

// Bytes by twos in lanes of 16 bits, where the lower byte of a sum is right whatever stands above it. What one
// load puts there are samples of the even outputs for a tap, and of the odd outputs for the tap before.
template <int n>
struct sums<std::uint8_t, n> {
  using lane = std::uint16_t;
  static constexpr int pairs = n / 2;
  static constexpr int width = pairs * KORVO_VECTOR_BYTES;

  vec<lane> even[pairs] = {};
  vec<lane> odd[pairs] = {};

  [[gnu::always_inline]] void add(const std::uint8_t* samples, const std::uint8_t* taps, std::int64_t tap_step,
                                  std::int64_t count) {
    lane tap = taps[0];
    for (int u = 0; u < pairs; ++u) even[u] += load<lane>(samples + u * KORVO_VECTOR_BYTES) * tap;
    for (std::int64_t c = 1; c < count; ++c) {
      const lane before = tap;
      tap = taps[c * tap_step];
      for (int u = 0; u < pairs; ++u) {
        const vec<lane> x = load<lane>(samples + c + u * KORVO_VECTOR_BYTES);
        even[u] += x * tap;
        odd[u] += x * before;
      }
    }
    for (int u = 0; u < pairs; ++u)  // the upper bytes: a load one further on could end outside the matrix
      odd[u] += (load<lane>(samples + count - 1 + u * KORVO_VECTOR_BYTES) >> 8) * tap;
  }
  [[gnu::always_inline]] void write(std::uint8_t* out) const {
    for (int u = 0; u < pairs; ++u) store(out + u * KORVO_VECTOR_BYTES, (even[u] & 0xff) | (odd[u] << 8));
  }
};

template <int odd_half, int... lane>
[[gnu::always_inline]] inline vec<double> pick(vec<double> a, vec<double> b,
                                               std::integer_sequence<int, lane...>) {
  constexpr int n = sizeof...(lane);  // odd_half 0 swaps each pair of a; 1 takes even lanes of a, odd ones of b
  return __builtin_shufflevector(a, b, (odd_half ? lane + (lane & 1) * n : lane ^ 1)...);
}

// (x.re * tap.re - x.im * tap.im, x.im * tap.re + x.re * tap.im), the difference as a sum with -tap.im.
template <int n>
struct sums<korvo_dcomplex, n> {
  static constexpr int pairs = lanes<double> / 2;
  static constexpr int width = n * pairs;
  static constexpr std::make_integer_sequence<int, lanes<double>> all{};

  vec<double> s[n] = {};

  [[gnu::always_inline]] void add(const korvo_dcomplex* samples, const korvo_dcomplex* taps,
                                  std::int64_t tap_step, std::int64_t count) {
    for (std::int64_t c = 0; c < count; ++c) {
      const korvo_dcomplex tap = taps[c * tap_step];
      const vec<double> zero = {};
      const vec<double> im = pick<1>(zero - tap.im, zero + tap.im, all);
      for (int u = 0; u < n; ++u) {
        const vec<double> x = load<double>(samples + c + u * pairs);
        s[u] += x * tap.re + pick<0>(x, x, all) * im;
      }
    }
  }
  [[gnu::always_inline]] void write(korvo_dcomplex* out) const {
    for (int u = 0; u < n; ++u) store(out + u * pairs, s[u]);
  }
};

// Copies the samples of `count` positions of a row, from column `col` on; a null row is all zeros.
template <class T>
void gather(const correlation<T>& work, const T* row, std::int64_t col, std::int64_t count, T* samples) {
  const std::int64_t step = work.col_step;
  if (!row) {
    std::fill_n(samples, count, T{});
  } else if (lies_within(col, work.ncol) && lies_within(col + (count - 1) * step, work.ncol)) {
    for (std::int64_t t = 0; t < count; ++t) samples[t] = row[col + t * step];
  } else {
    for (std::int64_t t = 0; t < count; ++t) {
      const std::int64_t stated = col + t * step;
      const std::int64_t c = lies_within(stated, work.ncol) ? stated : work.rule(stated, work.ncol);
      samples[t] = c < 0 ? T{} : row[c];
    }
  }
}

// The samples of some adjacent outputs for some adjacent taps. Where outputs lie side by side, those for the
// next tap begin one element on; else each tap has samples of its own.
template <class T>
struct gathered {
  static constexpr int width = sums<T, 2>::width;
  static constexpr std::int64_t taps_apart = 8;
  static constexpr std::int64_t taps_side_by_side = 64;

  T samples[taps_apart * width + taps_side_by_side] = {};
  bool side_by_side;

  explicit gathered(const correlation<T>& work) : side_by_side(work.col_step == 1) {}
  std::int64_t most_taps() const { return side_by_side ? taps_side_by_side : taps_apart; }

  void fill(const correlation<T>& work, const T* row, std::int64_t col, std::int64_t cols, std::int64_t taps) {
    if (side_by_side)
      gather(work, row, col, cols + taps - 1, samples);
    else
      for (std::int64_t t = 0; t < taps; ++t) gather(work, row, col + t, cols, samples + t * width);
  }
  void add_to(sums<T, 2>& outputs, const T* taps, std::int64_t tap_step, std::int64_t count) const {
    if (side_by_side)
      outputs.add(samples, taps, tap_step, count);
    else
      for (std::int64_t t = 0; t < count; ++t)
        outputs.add(samples + t * width, taps + t * tap_step, tap_step, 1);
  }
};

// A block of outputs whose taps may lie anywhere, at most `block_rows` by what sums<T, 2> hold. Each row of
// samples is gathered once for all rows of outputs that it has taps for.
constexpr std::int64_t block_rows = 8;

template <class T>
void outer_block(const correlation<T>& work, std::int64_t i, std::int64_t rows, std::int64_t j,
                 std::int64_t cols) {
  sums<T, 2> outputs[block_rows];
  gathered<T> some(work);
  const std::int64_t top = i * work.row_step - work.row_offset;
  const std::int64_t left = j * work.col_step - work.col_offset;
  for (std::int64_t q = 0; q < (rows - 1) * work.row_step + work.kr; ++q) {
    const std::int64_t in_row = work.rule(top + q, work.nrow);
    const T* const row = in_row < 0 ? nullptr : work.in + in_row * work.ncol;
    for (std::int64_t c = 0; c < work.kc; c += some.most_taps()) {
      const std::int64_t count = std::min(some.most_taps(), work.kc - c);
      some.fill(work, row, left + c, cols, count);
      for (std::int64_t a = 0; a < rows; ++a) {
        const std::int64_t r = q - a * work.row_step;
        if (lies_within(r, work.kr))
          some.add_to(outputs[a], work.taps + (r * work.kc + c) * work.tap_step, work.tap_step, count);
      }
    }
  }
  for (std::int64_t a = 0; a < rows; ++a) {
    T results[gathered<T>::width];
    outputs[a].write(results);
    std::copy_n(results, cols, work.out + (i + a) * work.out_cols + j);
  }
}

// The outputs from row `top` and column `left` to before `bottom` and `right`.
struct rectangle {
  std::int64_t top;
  std::int64_t bottom;
  std::int64_t left;
  std::int64_t right;
};

template <class T>
void outer(const correlation<T>& work, const rectangle& area) {
  constexpr std::int64_t width = sums<T, 2>::width;
  const std::int64_t height = work.row_step < work.kr ? block_rows : 1;  // else rows share no samples
  for (std::int64_t i = area.top; i < area.bottom; i += height)
    for (std::int64_t j = area.left; j < area.right; j += width)
      outer_block(work, i, std::min(height, area.bottom - i), j, std::min(width, area.right - j));
}

// The same samples for several rows of outputs, each with taps one row before those of the row above it.
template <int rows, class T, int n>
[[gnu::always_inline]] inline void add_to_rows(sums<T, n> (&outputs)[rows], const correlation<T>& work,
                                               const T* samples, const T* taps) {
  if constexpr (rows == 1) {
    outputs[0].add(samples, taps, work.tap_step, work.kc);
  } else {
    for (std::int64_t c = 0; c < work.kc; ++c) {
      T tap[rows];
      for (int a = 0; a < rows; ++a) tap[a] = taps[(c - a * work.kc) * work.tap_step];
      for (int u = 0; u < n; ++u) {
        const vec<T> x = load<T>(samples + c + u * lanes<T>);
        for (int a = 0; a < rows; ++a) outputs[a].s[u] += x * tap[a];
      }
    }
  }
}

// `rows` rows of n vectors of outputs, with at least as many rows of taps, all inside the matrix.
template <int rows, int n, class T>
void inner_tile(const correlation<T>& work, const T* samples, T* out) {
  sums<T, n> outputs[rows];
  const std::int64_t ncol = work.ncol;
  const std::int64_t tap_row = work.kc * work.tap_step;
  for (int q = 0; q < rows - 1; ++q)  // the first rows of samples have taps for the upper outputs only
    for (int a = 0; a <= q; ++a)
      outputs[a].add(samples + q * ncol, work.taps + (q - a) * tap_row, work.tap_step, work.kc);
  for (std::int64_t q = rows - 1; q < work.kr; ++q)
    add_to_rows(outputs, work, samples + q * ncol, work.taps + q * tap_row);
  for (int q = 0; q < rows - 1; ++q)  // and the last ones for the lower outputs
    for (int a = q + 1; a < rows; ++a)
      outputs[a].add(samples + (work.kr + q) * ncol, work.taps + (work.kr + q - a) * tap_row, work.tap_step,
                     work.kc);
  for (int a = 0; a < rows; ++a) outputs[a].write(out + a * work.out_cols);
}

// Tiles over an area whose height is a multiple of theirs. The last of a row steps back and overlaps the one
// before it.
template <int rows, int n, class T>
void inner_tiles(const correlation<T>& work, const rectangle& area) {
  constexpr std::int64_t width = sums<T, n>::width;
  for (std::int64_t i = area.top; i < area.bottom; i += rows)
    for (std::int64_t x = area.left; x < area.right; x += width) {
      const std::int64_t j = std::min(x, area.right - width);
      const std::int64_t first = (i * work.row_step - work.row_offset) * work.ncol + (j - work.col_offset);
      inner_tile<rows, n>(work, work.in + first, work.out + i * work.out_cols + j);
    }
}

// Outputs whose taps all lie inside the matrix, side by side and at least two vectors of them.
template <class T>
void inner(const correlation<T>& work, rectangle area) {
  const std::int64_t width = area.right - area.left;
  if constexpr (KORVO_VECTOR_BYTES == 64 && std::is_same_v<T, double>) {
    // Loads are what holds single rows up; with 32 registers four rows can share them.
    if (work.row_step == 1 && work.kr > 4 && width >= sums<T, 4>::width) {
      const std::int64_t whole = area.bottom - (area.bottom - area.top) % 4;
      inner_tiles<4, 4>(work, {area.top, whole, area.left, area.right});
      area.top = whole;
    }
  }
  if (width < sums<T, 8>::width)
    inner_tiles<1, 2>(work, area);
  else
    inner_tiles<1, 8>(work, area);
}

// The outputs i of a dimension that have all taps inside: from 0 <= i * step - offset to
// i * step - offset + taps <= n.
struct interval {
  std::int64_t first;
  std::int64_t last;
};
inline interval inner_range(std::int64_t offset, std::int64_t step, std::int64_t taps, std::int64_t n,
                            std::int64_t out_n) {
  const std::int64_t first = std::clamp<std::int64_t>((offset + step - 1) / step, 0, out_n);
  const std::int64_t room = n - taps + offset;
  return {first, room < 0 ? first : std::clamp(room / step + 1, first, out_n)};
}

template <class T>
void correlate(const correlation<T>& work) {
  const auto [top, bottom] = inner_range(work.row_offset, work.row_step, work.kr, work.nrow, work.out_rows);
  const auto [left, right] = inner_range(work.col_offset, work.col_step, work.kc, work.ncol, work.out_cols);
  if (work.col_step != 1 || right - left < sums<T, 2>::width) {
    outer(work, {0, work.out_rows, 0, work.out_cols});
    return;
  }
  outer(work, {0, top, 0, work.out_cols});
  outer(work, {top, bottom, 0, left});
  inner(work, {top, bottom, left, right});
  outer(work, {top, bottom, right, work.out_cols});
  outer(work, {bottom, work.out_rows, 0, work.out_cols});
}
