// Minima and maxima over a structuring element, results abreast; masks of a foreground.

// The running value stays where a candidate does not beat it: a NaN that comes first sticks, later ones lose,
// and of equal values the first one stays.
template <bool largest, class V>
[[gnu::always_inline]] inline V better(V candidate, V running) {
  if constexpr (largest)
    return candidate > running ? candidate : running;
  else
    return candidate < running ? candidate : running;
}

// Sums and differences wrap in the width of the element.
template <bool largest, class T>
[[gnu::always_inline]] inline vec<T> shifted(vec<T> samples, T value) {
  if constexpr (std::is_same_v<T, std::int32_t>) {
    using ring = vec<std::uint32_t>;
    const auto by = static_cast<std::uint32_t>(value);
    return (vec<T>)(largest ? (ring)samples + by : (ring)samples - by);
  } else {
    return largest ? samples + value : samples - value;
  }
}

// n vectors of results over the listed entries.
template <bool largest, bool flat, int n, class T>
[[gnu::always_inline]] inline void over_entries(const tile<T>& on, const T* samples, T* results) {
  const auto candidate = [&](const taking_part<T>& entry, int u) __attribute__((always_inline)) {
    const vec<T> x = load<T>(samples + entry.offset + u * lanes<T>);
    return flat ? x : shifted<largest>(x, entry.value);
  };
  vec<T> running[n];
  for (int u = 0; u < n; ++u)
    running[u] = on.begun ? load<T>(results + u * lanes<T>) : candidate(on.entries[0], u);
  for (std::int64_t t = 0; t < on.count; ++t)
    for (int u = 0; u < n; ++u) running[u] = better<largest>(candidate(on.entries[t], u), running[u]);
  for (int u = 0; u < n; ++u) store(results + u * lanes<T>, running[u]);
}

template <bool largest, bool flat, class T>
void over_entries(tile<T>& on) {
  constexpr std::int64_t block = 4 * lanes<T>;
  for (std::int64_t a = 0; a < on.rows; ++a) {
    const T* const samples = on.samples + a * tile<T>::pitch;
    T* const results = on.results + a * tile<T>::width;
    std::int64_t c = 0;
    for (; c + block <= on.cols; c += block) over_entries<largest, flat, 4>(on, samples + c, results + c);
    for (; c < on.cols; c += lanes<T>) over_entries<largest, flat, 1>(on, samples + c, results + c);
  }
}

// x[i] becomes the better of itself and x[i + apart], for i up to n and to the end of a vector.
template <bool largest, class T>
[[gnu::always_inline]] inline void fold(T* x, std::int64_t apart, std::int64_t n) {
  for (std::int64_t i = 0; i < n; i += lanes<T>)
    store(x + i, better<largest>(load<T>(x + i + apart), load<T>(x + i)));
}

// Over a whole rectangle of zeros: stretches of 2, 4, 8 ... samples, down the columns and then along the rows;
// the last two stretches overlap.
template <bool largest, class T>
void over_rectangle(tile<T>& on) {
  constexpr std::int64_t pitch = tile<T>::pitch;
  const std::int64_t needed = on.cols + on.part_cols - 1;
  for (std::int64_t span = 1; span < on.part_rows;) {
    const std::int64_t apart = std::min(span, on.part_rows - span);
    span += apart;
    for (std::int64_t a = 0; a < on.rows + on.part_rows - span; ++a)
      fold<largest>(on.samples + a * pitch, apart * pitch, needed);
  }
  for (std::int64_t a = 0; a < on.rows; ++a) {
    T* const samples = on.samples + a * pitch;
    T* const results = on.results + a * tile<T>::width;
    for (std::int64_t span = 1; span < on.part_cols;) {
      const std::int64_t apart = std::min(span, on.part_cols - span);
      span += apart;
      fold<largest>(samples, apart, on.cols + on.part_cols - span);
    }
    for (std::int64_t c = 0; c < on.cols; c += lanes<T>) {
      const vec<T> x = load<T>(samples + c);
      store(results + c, on.begun ? better<largest>(x, load<T>(results + c)) : x);
    }
  }
}

// Whether the order of the samples cannot show: none is NaN or -0.0.
template <class T>
bool is_plain(const tile<T>& on) {
  if constexpr (std::is_floating_point_v<T>) {
    vec<std::int64_t> odd = {};
    for (std::int64_t a = 0; a < on.rows + on.part_rows - 1; ++a)
      for (std::int64_t c = 0; c < on.cols + on.part_cols - 1; c += lanes<T>) {
        const T* const samples = on.samples + a * tile<T>::pitch + c;
        const vec<T> x = load<T>(samples);  // a NaN is unlike itself
        odd |=
            (x != load<T>(samples)) | (load<std::int64_t>(samples) == std::numeric_limits<std::int64_t>::min());
      }
    for (int u = 0; u < lanes<T>; ++u)
      if (odd[u]) return false;
  }
  return true;
}

// The stretches of 4 that lists of selected entries point to.
template <bool largest, class T>
void find_stretches(tile<T>& on) {
  const std::int64_t pitch = tile<T>::pitch;
  for (std::int64_t a = 0; a < on.rows + on.part_rows - 1; ++a)
    for (std::int64_t c = 0; c < on.cols + on.part_cols - tile<T>::stretch; c += lanes<T>) {
      const T* const x = on.samples + a * pitch + c;
      const vec<T> left = better<largest>(load<T>(x), load<T>(x + 1));
      store(on.samples + tile<T>::room + a * pitch + c,
            better<largest>(left, better<largest>(load<T>(x + 2), load<T>(x + 3))));
    }
}

template <bool largest, class T>
void extremes(tile<T>& on) {
  if (on.flat && on.whole && is_plain(on)) return over_rectangle<largest>(on);
  if constexpr (std::is_same_v<T, std::uint8_t>)
    if (!on.whole) find_stretches<largest>(on);
  if (on.flat && std::is_integral_v<T>)  // for dbl not even 0 is added in vain: -0.0 + 0.0 is 0.0
    over_entries<largest, true>(on);
  else
    over_entries<largest, false>(on);
}

template <class T>
void find(const T* in, T foreground, std::uint8_t* mask, std::int64_t n) {
  KORVO_INDEPENDENT
  for (std::int64_t i = 0; i < n; ++i) mask[i] = in[i] == foreground ? 255 : 0;
}

template <class T>
void paint(const std::uint8_t* mask, T foreground, T background, T* out, std::int64_t n) {
  KORVO_INDEPENDENT
  for (std::int64_t i = 0; i < n; ++i) out[i] = mask[i] ? foreground : background;
}
