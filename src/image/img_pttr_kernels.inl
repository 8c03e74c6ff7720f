// Element-wise loops, vectorised by the compiler for each level.

template <class T>
void map_window(const T* in, const window& to, std::uint8_t* out, std::int32_t n) {
  KORVO_INDEPENDENT
  for (std::int32_t i = 0; i < n; ++i) out[i] = grey_of(static_cast<double>(in[i]), to);
}

template <class T>
void map_threshold(const T* in, double threshold, std::uint8_t* out, std::int32_t n) {
  KORVO_INDEPENDENT
  for (std::int32_t i = 0; i < n; ++i) out[i] = static_cast<double>(in[i]) > threshold ? 255 : 0;
}
