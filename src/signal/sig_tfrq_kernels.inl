// Local products of a signal at one instant, lags abreast; `s` is the sample of the instant.

// acc[tau] += (s[-tau/2] * s[(tau+1)/2] + s[-(tau+1)/2] * s[tau/2]) * 0.5, by pairs of lags that share samples.
void add_symmetric_products(const double* s, std::int64_t lags, double* acc) {
  KORVO_INDEPENDENT
  for (std::int64_t q = 0; q < lags / 2; ++q) {
    acc[2 * q] += (s[-q] * s[q] + s[-q] * s[q]) * 0.5;
    acc[2 * q + 1] += (s[-q] * s[q + 1] + s[-q - 1] * s[q]) * 0.5;
  }
  if (lags % 2 == 1) acc[lags - 1] += (s[-(lags / 2)] * s[lags / 2] + s[-(lags / 2)] * s[lags / 2]) * 0.5;
}

// acc[tau] += s[tau] * s[0], and below `leaving` lags less the product one instant before.
void move_cone(const double* s, std::int64_t lags, std::int64_t leaving, double* acc) {
  const double now = s[0];
  const double before = s[-1];
  KORVO_INDEPENDENT
  for (std::int64_t tau = 0; tau < leaving; ++tau) acc[tau] = acc[tau] + s[tau] * now - s[-1 - tau] * before;
  KORVO_INDEPENDENT
  for (std::int64_t tau = leaving; tau < lags; ++tau) acc[tau] += s[tau] * now;
}

void centred_products(const double* s, std::int64_t lags, double* column) {
  const double now = s[0];
  KORVO_INDEPENDENT
  for (std::int64_t tau = 0; tau < lags; ++tau) column[tau] = (s[-tau] + s[tau]) * now * 0.5;
}

// Turns columns that lie side by side in `pitch` elements each into columns of a matrix.
template <int columns>
void turn_columns(const double* from, std::int64_t pitch, std::int64_t rows, double* to, std::int64_t ncol) {
  for (std::int64_t row = 0; row < rows; ++row)
    for (int k = 0; k < columns; ++k) to[row * ncol + k] = from[k * pitch + row];
}

// The products of offset mu for the lags from `first` to before `last`, added to their sums.
void add_offset(const smoothing& at, std::int64_t mu, std::int64_t first, std::int64_t last, double* sums) {
  const double* const weights = at.kernel + mu * at.pitch;
  KORVO_INDEPENDENT
  for (std::int64_t tau = first; tau < last; ++tau)
    sums[tau] += weights[tau] *
                 (at.ahead[tau + mu] * at.behind[tau - mu + 1] + at.ahead[tau - mu + 1] * at.behind[tau + mu]);
}

// The offsets from `top` down to before `bottom` for n vectors of lags, their sums in registers.
template <int n>
void add_offsets(const smoothing& at, std::int64_t tau, std::int64_t top, std::int64_t bottom) {
  vec<double> s[n];
  for (int u = 0; u < n; ++u) s[u] = load<double>(at.sums + tau + u * lanes<double>);
  for (std::int64_t mu = top; mu > bottom; --mu)
    for (int u = 0; u < n; ++u) {
      const std::int64_t lag = tau + u * lanes<double>;
      s[u] += load<double>(at.kernel + mu * at.pitch + lag) *
              (load<double>(at.ahead + lag + mu) * load<double>(at.behind + lag - mu + 1) +
               load<double>(at.ahead + lag - mu + 1) * load<double>(at.behind + lag + mu));
    }
  for (int u = 0; u < n; ++u) store(at.next_sums + tau + u * lanes<double>, s[u]);
}

// The same for all lags. The last block steps back over lags already done, so sums go from one array to
// another.
void add_common_offsets(smoothing& at, std::int64_t top, std::int64_t bottom) {
  constexpr int n = 4;
  constexpr std::int64_t one = lanes<double>;
  if (at.last - at.first >= n * one) {
    for (std::int64_t tau = at.first; tau < at.last; tau += n * one)
      add_offsets<n>(at, std::min(tau, at.last - n * one), top, bottom);
  } else if (at.last - at.first >= one) {
    for (std::int64_t tau = at.first; tau < at.last; tau += one)
      add_offsets<1>(at, std::min(tau, at.last - one), top, bottom);
  } else {
    for (std::int64_t mu = top; mu > bottom; --mu) add_offset(at, mu, at.first, at.last, at.sums);
    return;
  }
  std::swap(at.sums, at.next_sums);
}

// Offset 0, and then those from the farthest down that are near enough for some of the lags only.
void begin_sums(const smoothing& at) {
  for (std::int64_t tau = at.first; tau < at.last; ++tau)
    at.sums[tau] =
        at.kernel[tau] * (at.ahead[tau + 1] * at.behind[tau] + at.behind[tau + 1] * at.ahead[tau]) * 0.5;
  for (std::int64_t mu = at.last_offset(at.first); mu > at.common_offset(); --mu)
    add_offset(at, mu, at.first, std::min(at.last, at.reach - mu), at.sums);
}

// The sums of several instants, a few offsets of all of them at a time while those lie in the cache.
void smooth(smoothing* at, std::int64_t count) {
  constexpr std::int64_t few = 16;
  std::int64_t top = 0;
  for (std::int64_t k = 0; k < count; ++k) {
    begin_sums(at[k]);
    top = std::max(top, at[k].common_offset());
  }
  for (; top > 0; top -= few)
    for (std::int64_t k = 0; k < count; ++k)
      add_common_offsets(at[k], std::min(top, at[k].common_offset()), std::max<std::int64_t>(top - few, 0));
}
