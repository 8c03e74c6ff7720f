// Local maxima of a run, many instants abreast.

// Marks from the second of n elements to the last but one.
void mark_interior(const double* w, double tolerance, std::int32_t n, std::int32_t* mask) {
  KORVO_INDEPENDENT
  for (std::int32_t j = 1; j < n - 1; ++j) {
    const double m = __builtin_fabs(w[j]);
    mask[j] = static_cast<std::int32_t>(__builtin_fabs(w[j - 1]) + tolerance < m) &
              static_cast<std::int32_t>(m > __builtin_fabs(w[j + 1]) + tolerance);
  }
}
