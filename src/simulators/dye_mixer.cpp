#include "simulators/dye_mixer.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <functional>
#include <limits>
#include <map>
#include <optional>

namespace {

// The charts of the two ranges, as the makers print them (brand names of
// outside products). REN's first swatch is the bare natural leather.
const std::vector<TDyeSwatch> kRenSwatches = {
    {"natural", "ベース革・ナチュラル", "Natural", {187, 142, 123}},
    {"navy_blue", "ネイビーブルー", "Navy Blue", {39, 39, 53}},
    {"lemon_yellow", "レモンイエロー", "Lemon Yellow", {193, 151, 50}},
    {"cherry_red", "チェリーレッド", "Cherry Red", {133, 31, 29}},
    {"maron_brown", "マロンブラウン", "Maron Brown", {117, 41, 35}},
    {"banana_yellow", "バナナイエロー", "Banana Yellow", {177, 99, 32}},
    {"wine_red", "ワインレッド", "Wine Red", {124, 44, 49}},
    {"cocoa_brown", "ココアブラウン", "Cocoa Brown", {50, 33, 34}},
    {"carrot_orange", "キャロットオレンジ", "Carrot Orange", {165, 39, 30}},
    {"sky_blue", "スカイブルー", "Sky Blue", {21, 57, 125}},
    {"deep_black", "ディープブラック", "Deep Black", {35, 36, 38}},
};

const std::vector<TDyeSwatch> kCraftersSwatches = {
    {"yellow", "イエロー", "yellow", {188, 110, 47}},
    {"orange", "オレンジ", "orange", {166, 51, 37}},
    {"magenta", "マゼンタ", "magenta", {166, 38, 48}},
    {"red", "レッド", "red", {132, 41, 40}},
    {"turquoise", "ターコイズ", "turquoise", {13, 77, 101}},
    {"blue", "ブルー", "blue", {27, 51, 100}},
    {"navy", "ネイビー", "navy", {29, 40, 67}},
    {"choco", "チョコ (ブラウン50/ネイビー50)", "choco", {70, 41, 47}},
    {"brown", "ブラウン", "brown", {143, 40, 37}},
    {"black", "ブラック", "black", {35, 34, 35}},
};

const TDyeSystemInfo kRenInfo{TDyeSystem::dsREN, "Lized REN", 2.0};
const TDyeSystemInfo kCraftersInfo{TDyeSystem::dsCrafters, "Crafters Ink", 2.0};

TDyeLin linearOf(const TDyeRGB& rgb) {
  return {srgbToLinear(rgb[0]), srgbToLinear(rgb[1]), srgbToLinear(rgb[2])};
}

TDyeLin kubelkaMunkOf(const TDyeLin& lin) {
  return {kubelkaMunk(lin[0]), kubelkaMunk(lin[1]), kubelkaMunk(lin[2])};
}

struct TPigmentTable {
  std::vector<TDyePigment> FList;  // list order
  std::map<std::string, size_t> FIndex;
  void add(TDyePigment p) {
    FIndex.emplace(p.Id, FList.size());
    FList.push_back(std::move(p));
  }
};

struct TDyeTables {
  TDyeLin FBaseLinear{};
  TDyeLin FBaseKS{};
  TDyeRGB FBaseRGB{};
  TPigmentTable FRen, FCrafters;

  TDyeTables() {
    FBaseRGB = kRenSwatches.front().RGB;
    FBaseLinear = linearOf(FBaseRGB);
    FBaseKS = kubelkaMunkOf(FBaseLinear);
    for (const TDyeSwatch& s : kRenSwatches) FRen.add(pigmentOf(s, kRenInfo.ChartDilution));
    // The bare leather is REN's diluent: thinning a dye lets the leather show.
    TDyePigment& natural = FRen.FList.front();
    natural.LabelJa = "希釈液";
    natural.LabelEn = "Diluent";
    natural.KOverS = {0, 0, 0};
    // Crafters Ink is applied to the same leather: one base for both.
    FCrafters.add({"diluent", "希釈液", "Diluent", FBaseRGB, FBaseLinear, {0, 0, 0}});
    for (const TDyeSwatch& s : kCraftersSwatches) FCrafters.add(pigmentOf(s, kCraftersInfo.ChartDilution));
  }

  TDyePigment pigmentOf(const TDyeSwatch& s, double chartDilution) const {
    TDyePigment p{s.Id, s.LabelJa, s.LabelEn, s.RGB, linearOf(s.RGB), {}};
    for (int c = 0; c < 3; ++c) p.KOverS[c] = chartDilution * (kubelkaMunk(p.RGBLinear[c]) - FBaseKS[c]);
    return p;
  }

  const TPigmentTable& of(TDyeSystem system) const { return system == TDyeSystem::dsREN ? FRen : FCrafters; }
};

const TDyeTables& tables() {
  static const TDyeTables t;
  return t;
}

// Least squares with x >= 0 over the k columns of A (3 rows), by trying every
// subset of columns: solve the normal equations of the subset and keep the
// feasible solution with the smallest residual. At most 15 tiny systems.
std::optional<std::vector<double>> nonNegativeLeastSquares(const std::vector<TDyeLin>& columns,
                                                           const TDyeLin& t) {
  const int n = static_cast<int>(columns.size());
  std::optional<std::vector<double>> best;
  double bestResidual = std::numeric_limits<double>::infinity();
  for (unsigned mask = 1; mask < (1u << n); ++mask) {
    std::vector<int> cols;
    for (int j = 0; j < n; ++j)
      if (mask & (1u << j)) cols.push_back(j);
    const int m = static_cast<int>(cols.size());
    // Augmented normal equations (Ac' Ac | Ac' t).
    double M[4][5] = {};
    for (int r = 0; r < m; ++r) {
      for (int c = 0; c < m; ++c)
        for (int ch = 0; ch < 3; ++ch) M[r][c] += columns[cols[r]][ch] * columns[cols[c]][ch];
      for (int ch = 0; ch < 3; ++ch) M[r][m] += columns[cols[r]][ch] * t[ch];
    }
    bool singular = false;
    for (int p = 0; p < m && !singular; ++p) {
      int pivot = p;
      for (int r = p + 1; r < m; ++r)
        if (std::fabs(M[r][p]) > std::fabs(M[pivot][p])) pivot = r;
      if (std::fabs(M[pivot][p]) < 1e-12) {
        singular = true;
        break;
      }
      if (pivot != p)
        for (int c = 0; c <= m; ++c) std::swap(M[p][c], M[pivot][c]);
      for (int r = p + 1; r < m; ++r) {
        const double f = M[r][p] / M[p][p];
        for (int c = p; c <= m; ++c) M[r][c] -= f * M[p][c];
      }
    }
    if (singular) continue;
    double y[4] = {};
    for (int r = m - 1; r >= 0; --r) {
      double v = M[r][m];
      for (int c = r + 1; c < m; ++c) v -= M[r][c] * y[c];
      y[r] = v / M[r][r];
    }
    bool negative = false;
    for (int r = 0; r < m; ++r) negative = negative || y[r] < -1e-6;
    if (negative) continue;
    std::vector<double> x(n, 0.0);
    for (int r = 0; r < m; ++r)
      if (y[r] > 0) x[cols[r]] = y[r];
    double residual = 0;
    for (int ch = 0; ch < 3; ++ch) {
      double v = -t[ch];
      for (int j = 0; j < n; ++j) v += columns[j][ch] * x[j];
      residual += v * v;
    }
    if (residual < bestResidual) {
      bestResidual = residual;
      best = std::move(x);
    }
  }
  return best;
}

// Every choice of k of n indexes, in lexicographic order, until the visitor
// says stop.
void forEachCombination(int n, int k, const std::function<bool(const std::vector<int>&)>& visit) {
  if (k <= 0 || k > n) return;
  std::vector<int> idx(k);
  for (int i = 0; i < k; ++i) idx[i] = i;
  while (true) {
    if (!visit(idx)) return;
    int i = k - 1;
    while (i >= 0 && idx[i] == n - k + i) --i;
    if (i < 0) return;
    ++idx[i];
    for (int j = i + 1; j < k; ++j) idx[j] = idx[j - 1] + 1;
  }
}

}  // namespace

// ---- the tables ----

const TDyeSystemInfo& dyeSystemInfo(TDyeSystem system) {
  return system == TDyeSystem::dsREN ? kRenInfo : kCraftersInfo;
}

const char* dyeDiluentId(TDyeSystem system) { return system == TDyeSystem::dsREN ? "natural" : "diluent"; }

const std::vector<TDyeSwatch>& dyeSwatches(TDyeSystem system) {
  return system == TDyeSystem::dsREN ? kRenSwatches : kCraftersSwatches;
}

std::vector<const TDyePigment*> dyeAllPigments(TDyeSystem system) {
  std::vector<const TDyePigment*> out;
  for (const TDyePigment& p : tables().of(system).FList) out.push_back(&p);
  return out;
}

const TDyePigment* findDyePigment(TDyeSystem system, const std::string& id) {
  const TPigmentTable& t = tables().of(system);
  const auto it = t.FIndex.find(id);
  return it == t.FIndex.end() ? nullptr : &t.FList[it->second];
}

std::vector<const TDyePigment*> dyePigmentList(TDyeSystem system) {
  std::vector<const TDyePigment*> out;
  for (const TDyePigment& p : tables().of(system).FList)
    if (p.Id != "natural" && p.Id != dyeDiluentId(system)) out.push_back(&p);
  return out;
}

TDyeMix dyeBaseColour() { return {tables().FBaseRGB, tables().FBaseLinear}; }

// ---- colour arithmetic ----

double srgbToLinear(std::uint8_t byte) {
  const double v = byte / 255.0;
  return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
}

std::uint8_t linearToSrgb(double c) {
  double v = c <= 0.0031308 ? c * 12.92 : std::pow(c, 0.4166666666666667) * 1.055 - 0.055;
  v *= 255.0;
  if (!(v > 0.0)) v = 0.0;  // NaN too
  if (v > 255.0) v = 255.0;
  return static_cast<std::uint8_t>(std::lround(v));
}

double kubelkaMunk(double reflectance) {
  const double r = std::clamp(reflectance, 0.0001, 0.9999);
  return (1 - r) * (1 - r) / (2 * r);
}

std::array<double, 3> srgbToLab(const TDyeRGB& rgb) {
  const TDyeLin l = linearOf(rgb);
  const double X = (0.4124564 * l[0] + 0.3575761 * l[1] + 0.1804375 * l[2]) / 0.95047;
  const double Y = (0.2126729 * l[0] + 0.7151522 * l[1] + 0.072175 * l[2]) / 1.0;
  const double Z = (0.0193339 * l[0] + 0.119192 * l[1] + 0.9503041 * l[2]) / 1.08883;
  auto f = [](double t) {
    return t > 0.008856451679035631 ? std::pow(t, 0.3333333333333333) : (t * 903.2962962962963 + 16.0) / 116.0;
  };
  return {116.0 * f(Y) - 16.0, 500.0 * (f(X) - f(Y)), 200.0 * (f(Y) - f(Z))};
}

double dyeDeltaE(const TDyeRGB& a, const TDyeRGB& b) {
  const auto la = srgbToLab(a), lb = srgbToLab(b);
  return std::sqrt((la[0] - lb[0]) * (la[0] - lb[0]) + (la[1] - lb[1]) * (la[1] - lb[1]) +
                   (la[2] - lb[2]) * (la[2] - lb[2]));
}

std::string dyeHexText(const TDyeRGB& rgb) {
  char buf[8];
  std::snprintf(buf, sizeof buf, "#%.2x%.2x%.2x", rgb[0], rgb[1], rgb[2]);
  return buf;
}

// ---- mixing ----

TDyeMix dyeForwardMix(const std::vector<TDyeRecipeEntry>& recipe, TDyeSystem system) {
  double total = 0;
  for (const auto& e : recipe) total += e.Weight;
  if (!(total > 0)) return dyeBaseColour();
  TDyeMix out;
  for (int c = 0; c < 3; ++c) {
    double s = tables().FBaseKS[c];
    for (const auto& e : recipe)
      if (const TDyePigment* p = findDyePigment(system, e.PigmentId)) s += e.Weight / total * p->KOverS[c];
    s = std::max(s, 0.0);
    out.Linear[c] = s + 1 - std::sqrt(s * s + 2 * s);
    out.RGB[c] = linearToSrgb(out.Linear[c]);
  }
  return out;
}

std::vector<TDyeRecipeEntry> dyeWithDilution(std::vector<TDyeRecipeEntry> recipe, TDyeSystem system,
                                             double dilution) {
  double dyes = 0;
  for (const auto& e : recipe) dyes += e.Weight;
  const double diluent = (dilution - 1) * dyes;
  if (diluent > 0) recipe.push_back({dyeDiluentId(system), diluent});
  return recipe;
}

TInverseResults dyeInverseSearch(const TDyeRGB& target, TDyeSystem system, bool allowDiluent) {
  const std::vector<const TDyePigment*> candidates = dyePigmentList(system);
  const int n = static_cast<int>(candidates.size());
  TDyeLin t{};
  const TDyeLin targetLinear = linearOf(target);
  for (int c = 0; c < 3; ++c) t[c] = kubelkaMunk(targetLinear[c]) - tables().FBaseKS[c];

  TInverseResults results;
  for (int i = 0; i < 3; ++i) results[i].K = i + 2;
  for (TInverseResult& result : results) {
    const int k = result.K;
    double bestDeltaE = std::numeric_limits<double>::infinity();
    forEachCombination(n, k, [&](const std::vector<int>& idx) {
      std::vector<TDyeLin> columns;
      for (int i : idx) columns.push_back(candidates[i]->KOverS);
      const auto solution = nonNegativeLeastSquares(columns, t);
      if (!solution) return true;
      const std::vector<double>& x = *solution;
      double S = 0;
      for (double v : x) S += v;
      std::vector<TDyeRecipeEntry> recipe;
      double dilution = 1;
      bool outOfGamut = false;
      if (allowDiluent && S <= 1.001) {
        for (int j = 0; j < k; ++j) recipe.push_back({candidates[idx[j]]->Id, x[j]});
        if (1 - S > 1e-6) recipe.push_back({dyeDiluentId(system), 1 - S});
        dilution = S > 1e-6 ? 1 / S : 1;
      } else {
        if (S <= 1e-6) return true;
        for (int j = 0; j < k; ++j) recipe.push_back({candidates[idx[j]]->Id, x[j] / S});
        outOfGamut = S > 1.001;
      }
      const TDyeMix mix = dyeForwardMix(recipe, system);
      const double dE = dyeDeltaE(mix.RGB, target);
      if (dE < bestDeltaE) {
        bestDeltaE = dE;
        result.HasResult = true;
        result.DeltaE = dE;
        result.PredictedRGB = mix.RGB;
        result.Dilution = dilution;
        result.OutOfGamut = outOfGamut;
        result.Recipe.clear();
        for (int j = 0; j < k; ++j)
          result.Recipe.push_back({candidates[idx[j]]->Id, candidates[idx[j]]->LabelJa, S > 1e-9 ? x[j] / S : 0});
      }
      return true;
    });
  }
  return results;
}

// ---- what the window reads from the user ----

bool parseDyeColour(const std::string& text, TDyeRGB& rgb) {
  const size_t first = text.find_first_not_of(" \t");
  if (first == std::string::npos || text.size() > 64) return false;
  const std::string t = text.substr(first, text.find_last_not_of(" \t") + 1 - first);
  const bool hash = t[0] == '#';
  std::string hex = hash ? t.substr(1) : t;
  const bool allHex =
      std::all_of(hex.begin(), hex.end(), [](char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; });
  if (allHex && (hex.size() == 6 || (hex.size() == 3 && hash))) {
    if (hex.size() == 3) hex = {hex[0], hex[0], hex[1], hex[1], hex[2], hex[2]};
    for (int c = 0; c < 3; ++c) rgb[c] = static_cast<std::uint8_t>(std::stoi(hex.substr(2 * c, 2), nullptr, 16));
    return true;
  }
  // Three whole numbers.
  std::string numbers = t;
  for (char& c : numbers)
    if (c == ',' || c == ';') c = ' ';
  int v[3];
  char rest = 0;
  if (std::sscanf(numbers.c_str(), "%d %d %d %c", &v[0], &v[1], &v[2], &rest) != 3) return false;
  for (int c = 0; c < 3; ++c)
    if (v[c] < 0 || v[c] > 255) return false;
  for (int c = 0; c < 3; ++c) rgb[c] = static_cast<std::uint8_t>(v[c]);
  return true;
}

std::string checkDyeRecipe(const std::vector<TDyeRecipeEntry>& recipe, double dilution) {
  for (const auto& e : recipe)
    if (!(e.Weight >= 0 && e.Weight <= kDyeMaxAmount)) return "dye_bad_amount";
  if (!(dilution >= 1 && dilution <= kDyeMaxDilution)) return "dye_bad_dilution";
  return {};
}
