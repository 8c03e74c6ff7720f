// The two eliminations of a decomposition. Every element has the products taken away one at a time, in the
// order of the steps, whatever runs abreast.

// The columns of one step that lie in its panel: scales those elements of column j below the diagonal, and
// takes their multiples of row j away from the rows below it, up to column `last`.
void eliminate_panel(double* a, std::int64_t n, std::int64_t j, std::int64_t last) {
  const double* const pivot_row = a + j * n;
  const double inverse = 1.0 / pivot_row[j];
  for (std::int64_t i = j + 1; i < n; ++i) {
    double* const row = a + i * n;
    const double factor = row[j] *= inverse;
    KORVO_INDEPENDENT
    for (std::int64_t k = j + 1; k < last; ++k) row[k] -= factor * pivot_row[k];
  }
}

// Four rows of two vectors, less `depth` products of their factors and the rows of the strip.
[[gnu::always_inline]] inline void subtract_products(const double* factors, const double* strip,
                                                     std::int64_t depth, double* rows, std::int64_t stride) {
  constexpr std::int64_t width = lanes<double>;
  vec<double> rest[4][2];
  for (int i = 0; i < 4; ++i)
    for (int v = 0; v < 2; ++v) rest[i][v] = load<double>(rows + i * stride + v * width);
  for (std::int64_t k = 0; k < depth; ++k) {
    const auto left = load<double>(strip + 2 * k * width);
    const auto right = load<double>(strip + (2 * k + 1) * width);
    for (int i = 0; i < 4; ++i) {
      rest[i][0] -= factors[i * stride + k] * left;
      rest[i][1] -= factors[i * stride + k] * right;
    }
  }
  for (int i = 0; i < 4; ++i)
    for (int v = 0; v < 2; ++v) store(rows + i * stride + v * width, rest[i][v]);
}

// All steps of the panel from column `first` to `last` on the columns right of it, by strips of columns: first
// on the panel's own rows, gathered in one place, then on those below it.
void eliminate_trailing(double* a, std::int64_t n, std::int64_t first, std::int64_t last) {
  constexpr std::int64_t width = 2 * lanes<double>;
  static_assert(panel_width % width == 0 && panel_width % 4 == 0);
  const std::int64_t depth = last - first;
  double strip[panel_width * width];
  for (std::int64_t j = last; j < n; j += width) {
    for (std::int64_t k = 0; k < depth; ++k)
      __builtin_memcpy(strip + k * width, a + (first + k) * n + j, width * sizeof(double));
    for (std::int64_t k = 0; k < depth; ++k)
      for (std::int64_t i = k + 1; i < depth; ++i) {
        const double factor = a[(first + i) * n + first + k];
        KORVO_INDEPENDENT
        for (std::int64_t c = 0; c < width; ++c) strip[i * width + c] -= factor * strip[k * width + c];
      }
    for (std::int64_t k = 0; k < depth; ++k)
      __builtin_memcpy(a + (first + k) * n + j, strip + k * width, width * sizeof(double));
    for (std::int64_t i = last; i < n; i += 4) {
      const std::int64_t ahead = i + 4 < n ? 4 : 0;  // the next rows come while these are worked on
      for (std::int64_t r = i + ahead; r < i + ahead + 4; ++r)
        for (std::int64_t c = 0; c < width; c += 8) __builtin_prefetch(a + r * n + j + c, 1);
      subtract_products(a + i * n + first, strip, depth, a + i * n + j, n);
    }
  }
}
