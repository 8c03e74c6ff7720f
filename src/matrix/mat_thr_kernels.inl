// Element-wise loops, vectorised by the compiler for each level.

template <class T>
void mark_range(const T* in, range_of<T> range, std::uint8_t* mark, std::int32_t n) {
  KORVO_INDEPENDENT
  for (std::int32_t i = 0; i < n; ++i) {
    const typename range_of<T>::bound x = in[i];
    mark[i] = static_cast<std::uint8_t>((x >= range.low) & (x <= range.high));
  }
}

template <class T>
void choose(const std::uint8_t* mark, T unmarked, T marked, T* out, std::int32_t n) {
  KORVO_INDEPENDENT
  for (std::int32_t i = 0; i < n; ++i) out[i] = mark[i] ? marked : unmarked;
}
