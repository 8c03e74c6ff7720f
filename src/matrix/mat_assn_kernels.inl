// Transposition of tiles held in registers.

// Bytes of the vectors of a tile: 16 lanes of bytes, 8 of two and four bytes, and the level's own of eight.
template <class T>
constexpr int tile_bytes = sizeof(T) == 1   ? 16
                           : sizeof(T) == 8 ? KORVO_VECTOR_BYTES
                                            : (8 * static_cast<int>(sizeof(T)) < KORVO_VECTOR_BYTES
                                                   ? 8 * static_cast<int>(sizeof(T))
                                                   : KORVO_VECTOR_BYTES);
template <class T>
constexpr int tile_side = tile_bytes<T> / static_cast<int>(sizeof(T));

template <int half, class V, int... lane>
[[gnu::always_inline]] inline V interleave(V a, V b, std::integer_sequence<int, lane...>) {
  constexpr int n = sizeof...(lane);  // half 0 takes the lower lanes of a and b in turn, half 1 the upper
  return __builtin_shufflevector(a, b, ((lane & 1) * n + lane / 2 + half * (n / 2))...);
}

// One tile of side by side elements: log2(side) rounds of interleaving row i with row i + side / 2.
template <class T>
[[gnu::always_inline]] inline void transpose_tile(const T* in, std::int64_t in_stride, T* out,
                                                  std::int64_t out_stride) {
  constexpr int side = tile_side<T>;
  using V = vec<T, tile_bytes<T>>;
  constexpr std::make_integer_sequence<int, side> lanes_of_tile{};
  V rows[side];
  for (int i = 0; i < side; ++i) rows[i] = load<T, tile_bytes<T>>(in + i * in_stride);
  for (int round = 1; round < side; round *= 2) {
    V next[side];
    for (int i = 0; i < side / 2; ++i) {
      next[2 * i] = interleave<0>(rows[i], rows[i + side / 2], lanes_of_tile);
      next[2 * i + 1] = interleave<1>(rows[i], rows[i + side / 2], lanes_of_tile);
    }
    for (int i = 0; i < side; ++i) rows[i] = next[i];
  }
  for (int i = 0; i < side; ++i) store(out + i * out_stride, rows[i]);
}

// Writes `count` rows of the transposed matrix, which are the columns of `in` from `first` on. A tile at the
// end steps back and overlaps the one before it.
template <class T>
void transpose_rows(const T* in, std::int32_t in_rows, std::int32_t in_cols, std::int32_t first,
                    std::int32_t count, T* out) {
  constexpr int side = tile_side<T>;
  if (in_rows < side || count < side) {
    for (std::int64_t i = first; i < first + count; ++i)
      for (std::int64_t j = 0; j < in_rows; ++j) out[i * in_rows + j] = in[j * in_cols + i];
    return;
  }
  for (std::int64_t c = 0; c < in_rows; c += side) {
    const std::int64_t j = std::min<std::int64_t>(c, in_rows - side);
    for (std::int64_t r = 0; r < count; r += side) {
      const std::int64_t i = first + std::min<std::int64_t>(r, count - side);
      transpose_tile(in + j * in_cols + i, in_cols, out + i * in_rows + j, in_rows);
    }
  }
}
