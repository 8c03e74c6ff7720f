// The full search of one level: two vectors of codewords abreast against several training vectors, each sum of
// squared differences in the order of its elements. A full sum picks the codeword that a sum left early picks.

// A lane keeps the first of its codewords that is nearest, and of lanes the lowest row wins a tie.
template <int count>
[[gnu::always_inline]] inline void search_few(const double* x, const codeword_groups& book, std::int32_t* rows,
                                              double* distances) {
  constexpr std::int64_t width = lanes<double>;
  constexpr std::int64_t group = codeword_groups::group;
  vec<double> best[count];
  vec<std::int64_t> first[count] = {};
  for (int k = 0; k < count; ++k) best[k] = vec<double>{} + beyond_reach;
  for (std::int64_t row = 0; row < book.codewords; row += 2 * width) {
    const double* c = book.data + row / group * group * book.dimension + row % group;
    vec<double> sums[count][2] = {};
    for (std::int64_t e = 0; e < book.dimension; ++e, c += group)
      for (int v = 0; v < 2; ++v) {
        const auto codewords = load<double>(c + v * width);
        for (int k = 0; k < count; ++k) {
          const vec<double> difference = x[k * book.dimension + e] - codewords;
          sums[k][v] += difference * difference;
        }
      }
    for (int v = 0; v < 2; ++v)
      for (int k = 0; k < count; ++k) {
        const auto nearer = sums[k][v] < best[k];
        best[k] = nearer ? sums[k][v] : best[k];
        first[k] = nearer ? vec<std::int64_t>{} + (row + v * width) : first[k];
      }
  }
  for (int k = 0; k < count; ++k) {
    distances[k] = beyond_reach;
    rows[k] = 0;
    for (int lane = 0; lane < width; ++lane) {
      const double distance = best[k][lane];
      const auto row = static_cast<std::int32_t>(first[k][lane] + lane);
      if (!(distance < distances[k] || (distance == distances[k] && row < rows[k]))) continue;
      distances[k] = distance;
      rows[k] = row;
    }
  }
}

// The nearest codewords of `count` training vectors; beyond_reach where there is none.
void search_fully(const double* x, std::int64_t count, const codeword_groups& book, std::int32_t* rows,
                  double* distances) {
  std::int64_t i = 0;
  for (; i + 4 <= count; i += 4) search_few<4>(x + i * book.dimension, book, rows + i, distances + i);
  for (; i < count; ++i) search_few<1>(x + i * book.dimension, book, rows + i, distances + i);
}
