// Suppression of what is no maximum along its gradient, pixels of a row abreast.

inline void magnitudes(const double* gy, const double* gx, double* out, std::int64_t n) {
  KORVO_INDEPENDENT
  for (std::int64_t i = 0; i < n; ++i) out[i] = __builtin_sqrt(gy[i] * gy[i] + gx[i] * gx[i]);
}

// One inner row, from three rows of magnitudes; its first and last pixel are left alone. With s the sign of the
// slope, the far neighbours are the same two on a diagonal whichever direction is the steeper one, but for
// which of them lies ahead; for s = 0 they are the near ones.
inline void suppress_row(const double* gy, const double* gx, const double* above, const double* here,
                         const double* below, double* out, std::int64_t n) {
  constexpr double flat = 1e-08;
  KORVO_INDEPENDENT
  for (std::int64_t c = 1; c < n - 1; ++c) {
    const double y = gy[c], x = gx[c], size_y = __builtin_fabs(y), size_x = __builtin_fabs(x);
    const bool by_rows = size_x <= size_y;
    const double t = (by_rows ? x : y) / (by_rows ? y : x), a = __builtin_fabs(t);
    const double above_left = above[c - 1], above_mid = above[c], above_right = above[c + 1];
    const double below_left = below[c - 1], below_mid = below[c], below_right = below[c + 1];
    const double left = here[c - 1], magnitude = here[c], right = here[c + 1];
    const double near_ahead = by_rows ? below_mid : right, near_behind = by_rows ? above_mid : left;
    const double falling_ahead = by_rows ? below_left : above_right;
    const double falling_behind = by_rows ? above_right : below_left;
    const double far_ahead = t > 0.0 ? below_right : t < 0.0 ? falling_ahead : near_ahead;
    const double far_behind = t > 0.0 ? above_left : t < 0.0 ? falling_behind : near_behind;
    const double ahead = (1.0 - a) * near_ahead + a * far_ahead;
    const double behind = (1.0 - a) * near_behind + a * far_behind;
    const bool steep = (size_x > flat) | (size_y > flat);
    const bool lower = (magnitude < ahead) | (magnitude < behind);  // kept: no tie is broken
    out[c] = (steep & !lower) ? magnitude : 0.0;
  }
}
