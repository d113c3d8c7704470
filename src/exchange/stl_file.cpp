#include "exchange/stl_file.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <filesystem>

static_assert(std::endian::native == std::endian::little, "STL files are written little-endian as the host stores them");

namespace {

struct TKey {
  long long x, y, z;
  bool operator==(const TKey& o) const { return x == o.x && y == o.y && z == o.z; }
};

TKey keyOf(const TVec3& v) { return {std::llround(v.x * 1000.0), std::llround(v.y * 1000.0), std::llround(v.z * 1000.0)}; }

uint64_t hashOf(const TKey& k) {
  uint64_t h = uint64_t(k.x) * 0x9E3779B97F4A7C15ull;
  h = (h ^ (h >> 31) ^ uint64_t(k.y)) * 0xBF58476D1CE4E5B9ull;
  h = (h ^ (h >> 29) ^ uint64_t(k.z)) * 0x94D049BB133111EBull;
  return h ^ (h >> 32);
}

void putFloat(char*& at, double v) {
  const float f = float(v);
  std::memcpy(at, &f, 4);
  at += 4;
}

}  // namespace

TWeldedMesh weldTriangles(const TTriangleList& triangles) {
  TWeldedMesh m;
  // Open addressing on the corner keys; the table is kept under half full.
  size_t size = 16;
  while (size < triangles.size() * 4) size <<= 1;
  std::vector<uint32_t> slots(size, UINT32_MAX);
  std::vector<TKey> keys;
  keys.reserve(triangles.size());
  m.Corners.reserve(triangles.size());
  m.Facets.reserve(triangles.size() * 3);
  for (const TTriangle3D& t : triangles) {
    uint32_t id[3];
    for (int i = 0; i < 3; ++i) {
      const TKey k = keyOf(t.V[i]);
      size_t s = hashOf(k) & (size - 1);
      while (slots[s] != UINT32_MAX && !(keys[slots[s]] == k)) s = (s + 1) & (size - 1);
      if (slots[s] == UINT32_MAX) {
        slots[s] = uint32_t(keys.size());
        keys.push_back(k);
        m.Corners.push_back(t.V[i]);
      }
      id[i] = slots[s];
    }
    if (id[0] == id[1] || id[1] == id[2] || id[0] == id[2]) continue;
    m.Facets.insert(m.Facets.end(), {id[0], id[1], id[2]});
  }
  return m;
}

std::string binaryStlBytes(const TWeldedMesh& m) {
  const size_t n = m.facetCount();
  std::string out(84 + n * 50, '\0');
  const char* header = "Pelwright STL";
  std::memcpy(out.data(), header, std::strlen(header));
  const uint32_t count = uint32_t(n);
  std::memcpy(out.data() + 80, &count, 4);
  char* at = out.data() + 84;
  for (size_t f = 0; f < n; ++f) {
    const TVec3& a = m.Corners[m.Facets[3 * f]];
    const TVec3& b = m.Corners[m.Facets[3 * f + 1]];
    const TVec3& d = m.Corners[m.Facets[3 * f + 2]];
    const double ux = b.x - a.x, uy = b.y - a.y, uz = b.z - a.z;
    const double wx = d.x - a.x, wy = d.y - a.y, wz = d.z - a.z;
    double nx = uy * wz - uz * wy, ny = uz * wx - ux * wz, nz = ux * wy - uy * wx;
    const double len = std::sqrt(nx * nx + ny * ny + nz * nz);
    if (len > 0) nx /= len, ny /= len, nz /= len;
    for (double v : {nx, ny, nz, a.x, a.y, a.z, b.x, b.y, b.z, d.x, d.y, d.z}) putFloat(at, v);
    at += 2;  // attribute bytes stay 0
  }
  return out;
}

std::string stlTextFileName(const std::string& file) {
  const std::filesystem::path p(file);
  return (p.parent_path() / (p.stem().string() + "_text" + p.extension().string())).string();
}

TMeshCheck checkMesh(const TWeldedMesh& m) {
  TMeshCheck r;
  r.Facets = m.facetCount();
  // Each edge as its two corners, lower first, and a bit for its way.
  std::vector<uint64_t> edges;
  edges.reserve(m.Facets.size());
  for (size_t f = 0; f < r.Facets; ++f) {
    const uint32_t* v = &m.Facets[3 * f];
    for (int k = 0; k < 3; ++k) {
      const uint64_t a = v[k], b = v[(k + 1) % 3];
      edges.push_back(a < b ? ((a << 32 | b) << 1) : ((b << 32 | a) << 1 | 1));
    }
    const TVec3 &a = m.Corners[v[0]], &b = m.Corners[v[1]], &c = m.Corners[v[2]];
    r.Volume += (a.x * (b.y * c.z - b.z * c.y) - a.y * (b.x * c.z - b.z * c.x) + a.z * (b.x * c.y - b.y * c.x)) / 6;
  }
  std::sort(edges.begin(), edges.end());
  // A closed edge is run once each way: exactly the pair (e, e | 1).
  for (size_t i = 0; i < edges.size();) {
    size_t j = i;
    while (j < edges.size() && (edges[j] >> 1) == (edges[i] >> 1)) ++j;
    if (j - i == 2 && edges[i] + 1 == edges[i + 1]) {
      i = j;
      continue;
    }
    if (j - i == 1) ++r.OpenEdges;
    else ++r.BadEdges;
    i = j;
  }
  return r;
}
