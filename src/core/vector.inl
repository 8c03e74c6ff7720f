// The vector of one level; included inside the level's namespace by core/each_level.inl. Vectors are exactly
// as wide as the level: wider ones are split by the compiler and run many times slower.

template <class T, int bytes = KORVO_VECTOR_BYTES>
struct vector_of {
  typedef T type __attribute__((vector_size(bytes)));
};
template <class T, int bytes = KORVO_VECTOR_BYTES>
using vec = typename vector_of<T, bytes>::type;

template <class T>
constexpr int lanes = KORVO_VECTOR_BYTES / static_cast<int>(sizeof(T));

// By memcpy, since a pointer to elements is aligned to elements only.
template <class T, int bytes = KORVO_VECTOR_BYTES>
[[gnu::always_inline]] inline vec<T, bytes> load(const void* from) {
  vec<T, bytes> v;
  __builtin_memcpy(&v, from, sizeof v);
  return v;
}

template <class V>
[[gnu::always_inline]] inline void store(void* to, V v) {
  __builtin_memcpy(to, &v, sizeof v);
}
