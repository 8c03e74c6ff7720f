// Element-wise loops, vectorised by the compiler for each level.

template <class Op, class T>
void combine(const T* a, const T* b, T* out, std::int32_t n) {
  KORVO_INDEPENDENT
  for (std::int32_t i = 0; i < n; ++i) out[i] = Op{}(a[i], b[i]);
}

template <class Op, class T>
void combine_scalar(const T* a, T scalar, T* out, std::int32_t n) {
  KORVO_INDEPENDENT
  for (std::int32_t i = 0; i < n; ++i) out[i] = Op{}(a[i], scalar);
}

// One step of a product row: out += factor * b, many columns abreast.
template <class T>
void accumulate(T factor, const T* b, T* out, std::int32_t n) {
  KORVO_INDEPENDENT
  for (std::int32_t j = 0; j < n; ++j) out[j] = sum(out[j], times(factor, b[j]));
}
