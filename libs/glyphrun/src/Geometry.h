// Points, rectangles and matrices of the text reader. All in double: text positions are sums of
// thousands of small advances, and a page may be 14,400 units long.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace glyphrun {

struct Point {
  double x = 0;
  double y = 0;
};

/// The nearest whole number; what no page can hold is cut to a million points.
inline std::int32_t rounded(double value) {
  constexpr double farthest = 1e6;
  return static_cast<std::int32_t>(std::floor(std::clamp(value, -farthest, farthest) + 0.5));
}

inline Point operator+(Point a, Point b) {
  return {a.x + b.x, a.y + b.y};
}
inline Point operator-(Point a, Point b) {
  return {a.x - b.x, a.y - b.y};
}
inline Point operator*(Point a, double k) {
  return {a.x * k, a.y * k};
}
inline double dot(Point a, Point b) {
  return a.x * b.x + a.y * b.y;
}
inline double length(Point a) {
  // Most text runs along an axis, where it needs no root.
  return a.x == 0 ? std::abs(a.y) : a.y == 0 ? std::abs(a.x) : std::hypot(a.x, a.y);
}

/// A rectangle with left <= right and top <= bottom, unless it is empty.
struct Rect {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;

  /// A rectangle with an edge that is no number is empty.
  bool empty() const {
    return !(left < right && top < bottom); // NOLINT(readability-simplify-boolean-expr)
  }

  Rect intersected(const Rect& other) const {
    return {std::max(left, other.left), std::max(top, other.top), std::min(right, other.right),
            std::min(bottom, other.bottom)};
  }
};

/// Row vectors, as in PDF: (x, y, 1) times the matrix.
struct Matrix {
  double a = 1;
  double b = 0;
  double c = 0;
  double d = 1;
  double e = 0;
  double f = 0;

  Point apply(Point p) const { return {a * p.x + c * p.y + e, b * p.x + d * p.y + f}; }

  /// Direction and length of a vector, without the translation.
  Point applyVector(Point p) const { return {a * p.x + c * p.y, b * p.x + d * p.y}; }

  bool finite() const {
    return std::isfinite(a) && std::isfinite(b) && std::isfinite(c) && std::isfinite(d) &&
           std::isfinite(e) && std::isfinite(f);
  }

  /// The smallest upright rectangle that holds the transformed one.
  Rect bounds(const Rect& r) const {
    const Point p[4] = {apply({r.left, r.top}), apply({r.right, r.top}), apply({r.left, r.bottom}),
                        apply({r.right, r.bottom})};
    Rect out{p[0].x, p[0].y, p[0].x, p[0].y};
    for (const Point& q : p) {
      out.left = std::min(out.left, q.x);
      out.top = std::min(out.top, q.y);
      out.right = std::max(out.right, q.x);
      out.bottom = std::max(out.bottom, q.y);
    }
    return out;
  }
};

/// First `m`, then `n`.
inline Matrix operator*(const Matrix& m, const Matrix& n) {
  return {m.a * n.a + m.b * n.c, m.a * n.b + m.b * n.d,       m.c * n.a + m.d * n.c,
          m.c * n.b + m.d * n.d, m.e * n.a + m.f * n.c + n.e, m.e * n.b + m.f * n.d + n.f};
}

} // namespace glyphrun
