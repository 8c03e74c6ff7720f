// Three rows woven into one and back, as colour images need it; vectorised by the compiler for each level.

template <class T>
void weave_three(const T* a, const T* b, const T* c, T* out, std::int64_t n) {
  KORVO_INDEPENDENT
  for (std::int64_t i = 0; i < n; ++i) {
    out[3 * i] = a[i];
    out[3 * i + 1] = b[i];
    out[3 * i + 2] = c[i];
  }
}

template <class T>
void unweave_three(const T* in, T* a, T* b, T* c, std::int64_t n) {
  KORVO_INDEPENDENT
  for (std::int64_t i = 0; i < n; ++i) {
    a[i] = in[3 * i];
    b[i] = in[3 * i + 1];
    c[i] = in[3 * i + 2];
  }
}
