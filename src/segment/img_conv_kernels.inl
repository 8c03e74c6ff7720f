// Running sums of windows: what changes from column to column, a vector of columns at a time.

// Adds, row by row, what enters the windows of some columns and what leaves them, to the sums of `windows`
// windows that all contain the rows; with `squares`, the same of the squares.
template <bool squares, int windows, int bytes>
[[gnu::always_inline]] inline void add_to_vector(const double* const* rows, std::int64_t count,
                                                 std::int64_t enter, std::int64_t leave, std::int64_t pitch,
                                                 double* sums, double* sums_of_squares) {
  vec<double, bytes> s[windows];
  vec<double, bytes> q[windows];
  for (int w = 0; w < windows; ++w) {
    s[w] = load<double, bytes>(sums + w * pitch);
    if constexpr (squares) q[w] = load<double, bytes>(sums_of_squares + w * pitch);
  }
  for (std::int64_t i = 0; i < count; ++i) {
    const auto x = load<double, bytes>(rows[i] + enter);
    const auto y = load<double, bytes>(rows[i] + leave);
    const auto change = x - y;
    const auto change_of_squares = x * x - y * y;
    for (int w = 0; w < windows; ++w) {
      s[w] += change;
      if constexpr (squares) q[w] += change_of_squares;
    }
  }
  for (int w = 0; w < windows; ++w) {
    store(sums + w * pitch, s[w]);
    if constexpr (squares) store(sums_of_squares + w * pitch, q[w]);
  }
}

template <bool squares, int windows>
void add_changes(const double* const* rows, std::int64_t count, std::int64_t enter, std::int64_t leave,
                 std::int64_t cols, std::int64_t pitch, double* sums, double* sums_of_squares) {
  constexpr std::int64_t step = lanes<double>;
  std::int64_t k = 0;
  for (; k + step <= cols; k += step)
    add_to_vector<squares, windows, KORVO_VECTOR_BYTES>(rows, count, enter + k, leave + k, pitch, sums + k,
                                                        sums_of_squares + k);
  for (; k < cols; ++k)
    add_to_vector<squares, windows, sizeof(double)>(rows, count, enter + k, leave + k, pitch, sums + k,
                                                    sums_of_squares + k);
}

inline void divide(double divisor, std::int64_t count, double* values) {
  KORVO_INDEPENDENT
  for (std::int64_t k = 0; k < count; ++k) values[k] /= divisor;
}
