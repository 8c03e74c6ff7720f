// The work of an iteration on all columns of a row-major matrix, columns abreast and each in the order of its
// rows.

// Blocks of columns; the last one steps back and overlaps the one before it.
template <int bytes, int vectors>
[[gnu::always_inline]] inline void multiply_blocks(const double* const* rows, const double* v,
                                                   std::int64_t first, std::int64_t last, std::int64_t n,
                                                   double* products) {
  constexpr int width = bytes / 8;
  constexpr std::int64_t block = vectors * width;
  for (std::int64_t next = 0; next < n; next += block) {
    const std::int64_t j = next < n - block ? next : n - block;
    vec<double, bytes> sums[vectors] = {};
    for (std::int64_t l = first; l <= last; ++l)
      for (int k = 0; k < vectors; ++k) sums[k] += load<double, bytes>(rows[l] + j + k * width) * v[l];
    for (int k = 0; k < vectors; ++k) store(products + j + k * width, sums[k]);
  }
}

// The product of each of n columns, of the rows from `first` to `last`, with v.
void multiply_columns(const double* const* rows, const double* v, std::int64_t first, std::int64_t last,
                      std::int64_t n, double* products) {
  if (n >= 4 * lanes<double>)
    multiply_blocks<KORVO_VECTOR_BYTES, 4>(rows, v, first, last, n, products);
  else if (n >= 4)
    multiply_blocks<16, 2>(rows, v, first, last, n, products);
  else
    multiply_blocks<8, 1>(rows, v, first, last, n, products);
}

// To each column that has a product a multiple of v.
void reflect_columns(double* const* rows, const double* v, std::int64_t first, std::int64_t last,
                     std::int64_t n, const double* products, double inverse) {
  for (std::int64_t l = first; l <= last; ++l) {
    double* const row = rows[l];
    const double element = v[l];
    KORVO_INDEPENDENT
    for (std::int64_t j = 0; j < n; ++j) {
      const double moved = row[j] + products[j] * inverse * element;
      row[j] = products[j] != 0.0 ? moved : row[j];
    }
  }
}

// Each pair of elements of two rows, turned.
void rotate_rows(double c, double s, double* x, double* y, std::int64_t n) {
  KORVO_INDEPENDENT
  for (std::int64_t j = 0; j < n; ++j) {
    const double turned = c * x[j] + s * y[j];
    y[j] = c * y[j] - s * x[j];
    x[j] = turned;
  }
}
