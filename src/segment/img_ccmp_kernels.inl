// Rows as bits: finding runs, joining those of two rows, writing labels over them. Bit i of a row is element
// i % 64 of word i / 64, and bits past the end are 0.

// Sets a bit for each of n elements that equals the value; returns the number of runs of ones.
template <class T>
std::int64_t find_runs(const T* in, T value, std::int64_t n, std::uint64_t* bits) {
  constexpr std::int64_t strip = 2048;
  // Eight flags, one a byte in memory, become eight bits at the top of their product with this.
  constexpr std::uint64_t gather =
      std::endian::native == std::endian::little ? 0x0102040810204080U : 0x8040201008040201U;
  std::uint8_t flags[strip];
  std::int64_t runs = 0;
  std::uint64_t before = 0;
  for (std::int64_t first = 0; first < n; first += strip) {
    const std::int64_t count = n - first < strip ? n - first : strip;
    for (std::int64_t i = 0; i < count; ++i) flags[i] = in[first + i] == value ? 1 : 0;
    for (std::int64_t i = count; i % 64 != 0; ++i) flags[i] = 0;
    for (std::int64_t i = 0; i < count; i += 64) {
      std::uint64_t word = 0;
      for (int k = 0; k < 8; ++k) {
        std::uint64_t eight;
        __builtin_memcpy(&eight, flags + i + 8 * k, sizeof eight);
        word |= eight * gather >> 56 << 8 * k;
      }
      runs += std::popcount(word & ~(word << 1 | before));
      before = word >> 63;
      *bits++ = word;
    }
  }
  return runs;
}

// Makes two labels one component: the lower root becomes the other's. An entry is never above its index.
[[gnu::always_inline]] inline void unite(std::uint32_t* table, std::uint32_t a, std::uint32_t b) {
  std::uint32_t root_a = table[a];
  std::uint32_t root_b = table[b];
  while (root_a != table[root_a]) root_a = table[root_a] = table[table[root_a]];
  while (root_b != table[root_b]) root_b = table[root_b] = table[table[root_b]];
  const std::uint32_t root = root_a < root_b ? root_a : root_b;
  table[root_a] = root;
  table[root_b] = root;
  table[a] = root;
  table[b] = root;
}

// Unites each run of a row with the runs of another that it touches: in some column, or with `wide` diagonally
// too. The runs of a row have consecutive labels. Returns the label after those of the other row.
//
// Two runs touch first where the later of them begins and the other is there, which are bits that can be had
// for a whole word; with `wide` each run counts as one longer at its end, for then those meet that are to.
std::uint32_t join_runs(const std::uint64_t* row, const std::uint64_t* other, std::int64_t words, bool wide,
                        std::uint32_t first, std::uint32_t first_other, std::uint32_t* table) {
  const std::uint64_t longer = wide ? ~std::uint64_t{0} : 0;
  std::uint64_t before = 0;
  std::uint64_t before_other = 0;
  std::uint32_t label = first - 1;
  std::uint32_t label_other = first_other - 1;
  for (std::int64_t w = 0; w < words; ++w) {
    const std::uint64_t moved = row[w] << 1 | before;
    const std::uint64_t moved_other = other[w] << 1 | before_other;
    const std::uint64_t starts = row[w] & ~moved;
    const std::uint64_t starts_other = other[w] & ~moved_other;
    std::uint64_t meets =
        (starts & (other[w] | (moved_other & longer))) | (starts_other & (row[w] | (moved & longer)));
    for (; meets != 0; meets &= meets - 1) {
      const std::uint64_t up_to = meets ^ (meets - 1);
      unite(table, label + static_cast<std::uint32_t>(std::popcount(starts & up_to)),
            label_other + static_cast<std::uint32_t>(std::popcount(starts_other & up_to)));
    }
    label += static_cast<std::uint32_t>(std::popcount(starts));
    label_other += static_cast<std::uint32_t>(std::popcount(starts_other));
    before = row[w] >> 63;
    before_other = other[w] >> 63;
  }
  return label_other + 1;
}

// Calls visit(from, to, number) for each run of zeros or ones in a row of n bits, the first run perhaps empty:
// 0 or the table's entry for the run's label. Returns the label after those of the row. No label is taken for
// higher than the last one, for rows of planes that share a buffer are not what they were.
template <class Visit>
[[gnu::always_inline]] inline std::uint32_t visit_runs(const std::uint64_t* bits, std::int64_t n,
                                                       const std::uint32_t* table, std::uint32_t last,
                                                       std::uint32_t first, Visit visit) {
  std::uint32_t label = first - 1;
  std::uint32_t inside = 0;
  std::uint32_t number = 0;
  std::uint64_t before = 0;
  std::int64_t from = 0;
  for (std::int64_t base = 0; base < n; base += 64) {
    const std::uint64_t word = bits[base / 64];
    for (std::uint64_t turns = word ^ (word << 1 | before); turns != 0; turns &= turns - 1) {
      const std::int64_t to = base + std::countr_zero(turns);
      if (to == n) break;  // the end of a run that ends with the row
      visit(from, to, number);
      from = to;
      inside ^= 1;
      label += inside;
      number = table[label < last ? label : last] & (0 - inside);
    }
    before = word >> 63;
  }
  visit(from, n, number);
  return label + 1;
}

// Stores may run over the end of a run, for the next one follows, but not of the row.
struct writer {
  std::uint32_t* out;
  std::int64_t end;
  [[gnu::always_inline]] void operator()(std::int64_t from, std::int64_t to, std::uint32_t number) const {
    constexpr std::int64_t width = lanes<std::uint32_t>;
    const vec<std::uint32_t> numbers = vec<std::uint32_t>{} + number;
    const std::int64_t last = to + width <= end ? to : to - width + 1;
    for (; from < last; from += width) store(out + from, numbers);
    for (; from < to; ++from) out[from] = number;
  }
};
std::uint32_t write_labels(const std::uint64_t* bits, std::int64_t n, const std::uint32_t* table,
                           std::uint32_t last, std::uint32_t first, std::uint32_t* out) {
  return visit_runs(bits, n, table, last, first, writer{out, n});
}

struct measurer {
  std::uint32_t* sizes;
  [[gnu::always_inline]] void operator()(std::int64_t from, std::int64_t to, std::uint32_t number) const {
    sizes[number] += static_cast<std::uint32_t>(to - from);
  }
};
std::uint32_t add_sizes(const std::uint64_t* bits, std::int64_t n, const std::uint32_t* table,
                        std::uint32_t last, std::uint32_t first, std::uint32_t* sizes) {
  return visit_runs(bits, n, table, last, first, measurer{sizes});
}
