// Paints the test picture point by point, from the sky to the reeds in front.
#include "picture.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "noise.hpp"

namespace demo {
namespace {

constexpr double pi = 3.14159265358979323846;

// Positions are in units of the picture's height, from its upper left corner; colours from 0 to 1.
constexpr double horizon = 0.64;
constexpr double sun_x = 0.47;
constexpr double sun_y = 0.375;

struct colour {
  double r, g, b;
};

colour operator*(double s, const colour& c) { return {s * c.r, s * c.g, s * c.b}; }
colour operator+(const colour& a, const colour& b) { return {a.r + b.r, a.g + b.g, a.b + b.b}; }
colour mix(const colour& a, const colour& b, double t) { return (1.0 - t) * a + t * b; }

// From 0 at `low` to 1 at `high`, without a corner.
double rise(double low, double high, double x) {
  const double t = std::clamp((x - low) / (high - low), 0.0, 1.0);
  return t * t * (3.0 - 2.0 * t);
}

struct balloon {
  double x, y, radius;
  std::array<colour, 3> stripes;
};

constexpr std::array<balloon, 3> balloons{{
    {0.98, 0.215, 0.150, {{{0.86, 0.16, 0.14}, {0.98, 0.80, 0.22}, {0.96, 0.94, 0.88}}}},
    {0.235, 0.170, 0.088, {{{0.10, 0.42, 0.62}, {0.94, 0.94, 0.90}, {0.16, 0.66, 0.66}}}},
    {0.655, 0.375, 0.042, {{{0.46, 0.20, 0.52}, {0.96, 0.62, 0.20}, {0.90, 0.30, 0.36}}}},
}};

struct reed {
  double x, foot, height, lean, width;
};

class scene {
 public:
  scene();
  colour at(double x, double y) const;

 private:
  colour sky(double x, double y) const;
  colour distance(double x, double y) const;
  colour flight(const balloon& b, double x, double y, colour behind) const;
  colour above_water(double x, double y) const;
  colour water(double x, double y) const;
  colour shore(double x, double y, colour behind) const;

  noise texture_{7};
  std::vector<reed> reeds_;
};

scene::scene() {
  const auto chance = [this](int i, int what) { return texture_.at(3.0 * i + 0.5, 40.0 + 3.0 * what); };
  for (int i = 0; i < 70; ++i) {
    const double side = i % 3 == 0 ? 0.95 + 0.38 * chance(i, 0) : -0.02 + 0.42 * chance(i, 0) * chance(i, 1);
    reeds_.push_back({side, 1.02, 0.08 + 0.26 * chance(i, 2) * chance(i, 3), 0.16 * (chance(i, 4) - 0.45),
                      0.0022 + 0.0026 * chance(i, 5)});
  }
}

colour scene::sky(double x, double y) const {
  constexpr colour zenith{0.12, 0.27, 0.56}, middle{0.50, 0.55, 0.76}, low{1.0, 0.72, 0.50};
  const colour clear = mix(mix(zenith, middle, rise(-0.08, 0.32, y)), low, rise(0.20, 0.47, y));
  const double away = std::hypot(x - sun_x, (y - sun_y) * 1.15);
  const double glow = 1.0 / (1.0 + (away / 0.075) * (away / 0.075));
  const double cloud = texture_.layers(2.2 * x + 0.6 * y, 9.0 * y, 5);
  const double cover = rise(0.52, 0.74, cloud) * rise(0.0, 0.12, y) * (1.0 - rise(0.42, 0.6, y));
  const colour lit = mix({0.70, 0.66, 0.78}, {1.0, 0.83, 0.68}, rise(0.05, 0.45, y));
  colour c = mix(clear, lit, 0.75 * cover) + 0.62 * glow * colour{1.0, 0.72, 0.36};
  return mix(c, {1.0, 0.97, 0.86}, 1.0 - rise(0.033, 0.037, away));
}

struct range {
  double foot, height, width, roughness;
  colour tint;
};
// The near ones first.
constexpr std::array<range, 4> ranges{{{0.645, 0.050, 6.1, 1.4, {0.08, 0.15, 0.19}},
                                       {0.620, 0.100, 4.3, 0.9, {0.20, 0.27, 0.38}},
                                       {0.585, 0.170, 3.1, 1.0, {0.36, 0.37, 0.54}},
                                       {0.530, 0.220, 2.3, 1.0, {0.50, 0.46, 0.63}}}};

// Ranges of hills, each with haze at its foot, and the sky above them.
colour scene::distance(double x, double y) const {
  for (std::size_t k = 0; k < ranges.size(); ++k) {
    const range& hills = ranges[k];
    if (y < hills.foot - hills.height - 0.02) continue;
    const double offset = 89.0 - 23.0 * static_cast<double>(k);
    const int fineness = 7 - static_cast<int>(k);
    double crest = hills.foot - hills.height * texture_.layers(hills.width * x + offset, offset, fineness);
    if (k == 0) crest -= 0.016 * texture_.at(150.0 * x, 5.0) * texture_.at(37.0 * x, 9.0);  // trees
    if (y < crest) continue;
    const double slope = texture_.layers(14.0 * x + offset + 6.0 * y, 24.0 * y + 2.0 * x, 4) - 0.5;
    const double haze = rise(crest, hills.foot + 0.06, y) * (0.18 + 0.14 * static_cast<double>(k));
    const colour body = (1.0 + hills.roughness * 0.8 * slope) * hills.tint;
    const double warmth = 1.0 / (1.0 + 9.0 * (x - sun_x) * (x - sun_x));
    return mix(body, mix({0.80, 0.68, 0.72}, {1.0, 0.76, 0.54}, warmth), haze);
  }
  return sky(x, y);
}

// Half the width of an envelope at a height, both in radii: a sphere that narrows to its mouth.
double envelope(double height) {
  constexpr double join = 0.35, mouth = 1.28;
  if (height < -1.0 || height > mouth) return 0.0;
  if (height < join) return std::sqrt(1.0 - height * height);
  const double t = (height - join) / (mouth - join);
  const double top = std::sqrt(1.0 - join * join);
  const double slope = -join / top * (mouth - join);
  return top + t * slope + t * t * (3.0 * (0.17 - top) - 2.0 * slope + 0.55) +
         t * t * t * (2.0 * (top - 0.17) + slope - 0.55);
}

colour basket(const balloon& b, double across, double height, colour behind) {
  constexpr colour wicker{0.42, 0.26, 0.13};
  if (height > 1.62 && height < 1.86 && std::abs(across) < 0.13) {
    const double weave = std::sin(across * 120.0) * std::sin(height * 90.0);
    return (1.0 + 0.25 * weave - 1.6 * across) * wicker;
  }
  const double rope = 0.16 - 0.04 * (height - 1.28) / 0.34;
  if (height >= 1.28 && height <= 1.62 && std::abs(std::abs(across) - rope) < 0.012 + 0.0002 / b.radius)
    return 0.8 * wicker;
  return behind;
}

colour scene::flight(const balloon& b, double x, double y, colour behind) const {
  const double across = (x - b.x) / b.radius;
  const double height = (y - b.y) / b.radius;
  if (std::abs(across) > 1.0 || height < -1.0 || height > 1.9) return behind;
  const double half = envelope(height);
  if (std::abs(across) >= half) return basket(b, across, height, behind);

  const double nx = across / half;
  const double turn = (std::asin(nx) / pi + 0.5) * 9.0 + 0.5;  // gores seen from the side
  const auto gore = static_cast<std::size_t>(turn);
  const double seam = std::abs(turn - std::floor(turn) - 0.5);
  colour cloth = b.stripes[gore % 3];
  const double zigzag = 0.16 * std::abs(2.0 * (turn - std::floor(turn)) - 1.0);
  if (height > 0.08 + zigzag && height < 0.30 + zigzag) cloth = b.stripes[(gore + 1) % 3];
  if (height < -0.86) cloth = b.stripes[1];

  const double ny = height < 0.35 ? height : 0.35 + 0.4 * (height - 0.35);
  const double nz = std::sqrt(std::max(0.0, 1.0 - nx * nx) * std::max(0.0, 1.0 - ny * ny));
  const double toward_sun = b.x > sun_x ? -1.0 : 1.0;
  const double light = 0.42 + 0.42 * nz + 0.34 * std::max(0.0, 0.75 * toward_sun * nx + 0.35 * ny) -
                       0.20 * std::max(0.0, -toward_sun * nx) - 0.10 * rise(0.44, 0.5, seam);
  const double bulge = 1.0 - 0.16 * std::pow(2.0 * seam, 4.0);
  const double shine = std::pow(std::max(0.0, 0.62 * nz + 0.55 * toward_sun * nx - 0.45 * height), 14.0);
  return light * bulge * 1.16 * cloth + 0.5 * shine * colour{1.0, 0.9, 0.75};
}

colour scene::above_water(double x, double y) const {
  colour c = distance(x, y);
  for (const balloon& b : balloons) c = flight(b, x, y, c);
  return c;
}

// A mirror whose ripples grow towards the viewer.
colour scene::water(double x, double y) const {
  const double depth = (y - horizon) / (1.0 - horizon);
  const double rows = std::log(1.0 + 9.0 * depth);  // ripples far away lie closer together
  const double ripple = texture_.layers(9.0 * x / (0.25 + depth), 26.0 * rows, 3) - 0.5;
  const double mirrored = horizon - (y - horizon) * 1.25 + ripple * (0.02 + 0.10 * depth);
  const colour image = above_water(x + 0.05 * ripple * depth, std::clamp(mirrored, 0.0, horizon));
  colour c = mix(0.86 * image, {0.05, 0.14, 0.26}, 0.22 + 0.34 * depth);
  c = c + (0.16 * ripple) * colour{0.9, 0.8, 0.9};
  const double path = std::exp(-std::pow((x - sun_x) / (0.03 + 0.10 * depth), 2.0));
  const double glint = rise(0.52, 0.72, texture_.layers(20.0 * x / (0.3 + depth), 44.0 * rows, 2));
  return c + (0.75 * path * glint) * colour{1.0, 0.78, 0.45};
}

// Reeds, and a bank of grass before them.
colour scene::shore(double x, double y, colour behind) const {
  if (y < 0.60) return behind;
  const double bank =
      1.03 - 0.14 * rise(0.62, 0.0, x) - 0.10 * rise(0.92, 1.36, x) - 0.05 * texture_.layers(6.0 * x, 3.0, 5);
  if (y > bank) {
    const double grass = texture_.layers(70.0 * x + 8.0 * y, 18.0 * y, 3);
    return mix({0.03, 0.06, 0.05}, {0.26, 0.30, 0.14}, grass * (1.0 - rise(bank, bank + 0.16, y)));
  }
  colour c = behind;
  for (const reed& r : reeds_) {
    const double t = (r.foot - y) / r.height;
    if (t < 0.0 || t > 1.0) continue;
    const bool is_head = t > 0.72 && t < 0.94 && r.width > 0.0036;
    const double width = r.width * (1.0 - 0.8 * t) + (is_head ? 0.0042 : 0.0);
    const double aside = (x - r.x - r.lean * t * t) / width;
    if (std::abs(aside) > 1.0) continue;
    const double edge = (x < sun_x ? aside : -aside) * 0.5 + 0.5;  // lit on the side of the sun
    c = mix({0.05, 0.09, 0.06}, {0.62, 0.46, 0.20}, edge * edge * (0.35 + 0.65 * t));
  }
  return c;
}

colour scene::at(double x, double y) const {
  return shore(x, y, y < horizon ? above_water(x, y) : water(x, y));
}

// The mean over a few points of a pixel, so that edges are clean.
colour pixel(const scene& view, std::int32_t row, std::int32_t col, double height) {
  constexpr int points = 3;
  colour sum{};
  for (int i = 0; i < points; ++i)
    for (int j = 0; j < points; ++j) {
      const colour c = view.at((col + (j + 0.5) / points) / height, (row + (i + 0.5) / points) / height);
      sum = sum + colour{std::min(c.r, 1.0), std::min(c.g, 1.0), std::min(c.b, 1.0)};
    }
  return (1.0 / (points * points)) * sum;
}

planes paint(std::int32_t rows, std::int32_t cols) {
  const scene view;
  planes out(rows, cols, KORVO_DOUBLE);
  for (std::int32_t r = 0; r < rows; ++r)
    for (std::int32_t c = 0; c < cols; ++c) {
      const colour seen = pixel(view, r, c, rows);
      const std::array<double, 3> samples{seen.r, seen.g, seen.b};
      for (std::size_t k = 0; k < samples.size(); ++k)
        static_cast<double*>(out.mats[k].data)[r * cols + c] = 255.0 * samples[k];
    }
  return out;
}

// What a camera would add.
matrix grain(std::int32_t rows, std::int32_t cols, double strength) {
  matrix out(rows, cols);
  dice throws(5489);
  for (std::int32_t i = 0; i < out.nelem; ++i) static_cast<double*>(out.data)[i] = throws.normal();
  check(matuniv_multiply_scalar(&out, number(strength), nullptr, &out));
  return out;
}

}  // namespace

planes render_picture(std::int32_t rows, std::int32_t cols) {
  planes picture = paint(rows, cols);
  const matrix film = grain(rows, cols, 1.2);
  for (std::int32_t k = 0; k < picture.nmat; ++k)
    check(matuniv_add(&picture.mats[k], &film, nullptr, &picture.mats[k]));
  return as_type(picture, KORVO_UINT8);
}

}  // namespace demo
