#include <cmath>

#include "structure/pdb.h"

namespace {
/// Degrees per radian, with these digits: the last printed digit of an angle depends on them.
constexpr double degreesPerRadian = 57.29577951;
constexpr double pi = 3.14159265358979323846;
} // namespace

void PDB::Vec3Zero(float v[3]) {
  v[0] = v[1] = v[2] = 0;
}

void PDB::Vec3Copy(float dst[3], const float src[3]) {
  for (int i = 0; i < 3; ++i) {
    dst[i] = src[i];
  }
}

void PDB::Vec3Scale(float v[3], float s) {
  for (int i = 0; i < 3; ++i) {
    v[i] *= s;
  }
}

void PDB::Vec3Add(float a[3], const float b[3]) {
  for (int i = 0; i < 3; ++i) {
    a[i] += b[i];
  }
}

void PDB::Vec3Sub(float a[3], const float b[3]) {
  for (int i = 0; i < 3; ++i) {
    a[i] -= b[i];
  }
}

float PDB::Vec3Scalar(const float a[3], const float b[3]) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

void PDB::Vec3Cross(float a[3], const float b[3]) {
  const float product[3] = {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2],
                            a[0] * b[1] - a[1] * b[0]};
  Vec3Copy(a, product);
}

void PDB::Mat3VecMult(float v[3], const float m[3][3]) {
  float product[3];
  for (int j = 0; j < 3; ++j) {
    product[j] = v[0] * m[0][j] + v[1] * m[1][j] + v[2] * m[2][j];
  }
  Vec3Copy(v, product);
}

float PDB::Vec3Abs(const float v[3]) {
  return std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
}

float PDB::Vec3DiffAbs(const float a[3], const float b[3]) {
  float difference[3] = {a[0], a[1], a[2]};
  Vec3Sub(difference, b);
  return Vec3Abs(difference);
}

void PDB::Vec3Norm(float v[3]) {
  const float length = Vec3Abs(v);
  for (int i = 0; i < 3; ++i) {
    v[i] /= length;
  }
}

float PDB::sgn(float x) {
  return x >= 0 ? 1.0F : -1.0F;
}

float PDB::getDist(const float a[3], const float b[3]) {
  return Vec3DiffAbs(b, a);
}

float PDB::getDist(CORdata a, CORdata b) {
  return getDist(a.coor, b.coor);
}

float PDB::getBondAngle(CORdata a, CORdata b, CORdata c) {
  Vec3Sub(a.coor, b.coor);
  Vec3Sub(c.coor, b.coor);
  Vec3Norm(a.coor);
  Vec3Norm(c.coor);
  const double cosine = static_cast<double>(Vec3Scalar(a.coor, c.coor));
  Vec3Cross(a.coor, c.coor);
  const double sine = static_cast<double>(Vec3Abs(a.coor));
  return static_cast<float>(degreesPerRadian * std::atan2(sine, cosine));
}

float PDB::arccos_(float x) {
  const float bounded = x > 1 ? 1.0F : x < -1 ? -1.0F : x;
  const double c = static_cast<double>(bounded);
  // The square is rounded to single precision, as everything before it; the sines of angles near
  // 0 and 180 degrees owe their last digits to that.
  const double s = std::sqrt(1.0 - static_cast<double>(bounded * bounded));
  if (std::fabs(c) < 0.5) {
    return static_cast<float>(pi / 2.0 - std::atan(c / s));
  }
  return static_cast<float>(std::atan(s / c) + (c <= 0 ? pi : 0.0));
}

float PDB::getDihedralAngle(const CORdata& a, const CORdata& b, const CORdata& c,
                            const CORdata& d) {
  if (a.atomName.empty() || b.atomName.empty() || c.atomName.empty() || d.atomName.empty()) {
    return noAngle;
  }
  const float axis[3] = {c.x - b.x, c.y - b.y, c.z - b.z};
  const float near[3] = {a.x - b.x, a.y - b.y, a.z - b.z};
  const float far[3] = {d.x - c.x, d.y - c.y, d.z - c.z};
  float nearNormal[3] = {axis[0], axis[1], axis[2]};
  float farNormal[3] = {axis[0], axis[1], axis[2]};
  Vec3Cross(nearNormal, near);
  Vec3Cross(farNormal, far);
  const float lengths =
      std::sqrt(Vec3Scalar(farNormal, farNormal) * Vec3Scalar(nearNormal, nearNormal));
  const float angle = arccos_(Vec3Scalar(nearNormal, farNormal) / lengths);
  Vec3Cross(nearNormal, farNormal);
  const float sign = sgn(Vec3Scalar(nearNormal, axis));
  return static_cast<float>(degreesPerRadian * static_cast<double>(sign * angle));
}
