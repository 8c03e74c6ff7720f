// Conversion loops, vectorised by the compiler for each level.

template <class S, class D>
void convert(const S* in, D* out, std::int32_t n) {
  for (std::int32_t i = 0; i < n; ++i) out[i] = widened<D>(in[i]);
}

template <class S, class D>
void convert_clipped(const S* in, D* out, std::int32_t n) {
  for (std::int32_t i = 0; i < n; ++i) out[i] = clipped<D>(measured<D>(in[i]));
}

template <class S, class D>
bool all_fit(const S* in, std::int32_t n) {
  int misfits = 0;
  for (std::int32_t i = 0; i < n; ++i) misfits |= fits<D>(measured<D>(in[i])) ? 0 : 1;
  return misfits == 0;
}
