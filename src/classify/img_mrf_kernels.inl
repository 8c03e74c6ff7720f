// Squared Mahalanobis distances, pixels abreast.

template <class T>
void subtract_mean(const T* band, double mean, double* out, std::int32_t n) {
  KORVO_INDEPENDENT
  for (std::int32_t p = 0; p < n; ++p) out[p] = static_cast<double>(band[p]) - mean;
}

// out = d * inverse * d for each of n pixels. Band i of the differences begins at d + i * pitch, and each has
// as many numbers as whole blocks need.
inline void squared_distances(const double* d, std::int64_t pitch, const double* inverse, std::int64_t bands,
                              double* out, std::int32_t n) {
  constexpr int vectors = 4;
  constexpr std::int32_t block = vectors * lanes<double>;
  for (std::int32_t p = 0; p < n; p += block) {
    vec<double> distance[vectors] = {};
    for (std::int64_t j = 0; j < bands; ++j) {
      vec<double> y[vectors] = {};
      for (std::int64_t k = 0; k < bands; ++k)
        for (int u = 0; u < vectors; ++u)
          y[u] += load<double>(d + k * pitch + p + u * lanes<double>) * inverse[k * bands + j];
      for (int u = 0; u < vectors; ++u)
        distance[u] += load<double>(d + j * pitch + p + u * lanes<double>) * y[u];
    }
    double results[block];
    for (int u = 0; u < vectors; ++u) store(results + u * lanes<double>, distance[u]);
    std::copy_n(results, std::min(block, n - p), out + p);
  }
}
