#include "libraries/builtin_templates.h"

#include <cmath>
#include <memory>
#include <numbers>

#include "document/json_text_writer.h"
#include "document/project_json.h"
#include "libraries/parts_repository.h"
#include "libraries/repository_tree.h"
#include "libraries/template_outline.h"

namespace {

using TShapes = std::vector<std::unique_ptr<TPW_Path>>;

std::unique_ptr<TPW_Path> newShape() {
  return std::make_unique<TPW_Path>(0, 0xFF000000, 0.3f, TStrokeDash::Solid, 0);
}

void line(TShapes& out, double x1, double y1, double x2, double y2) {
  auto s = newShape();
  s->drawLinePath(TPointF::fromDouble(x1, y1), TPointF::fromDouble(x2, y2));
  out.push_back(std::move(s));
}

// A circular arc from angle a over sweep (degrees, clockwise on the
// screen), as one cubic per quarter turn or less.
void arc(TShapes& out, double cx, double cy, double r, double a, double sweep) {
  const int n = std::max(1, int(std::ceil(std::fabs(sweep) / 90.0 - 1e-9)));
  const double step = sweep / n * std::numbers::pi / 180.0;
  const double k = 4.0 / 3.0 * std::tan(step / 4.0);
  double t = a * std::numbers::pi / 180.0;
  for (int i = 0; i < n; ++i, t += step) {
    const double c0 = std::cos(t), s0 = std::sin(t), c1 = std::cos(t + step), s1 = std::sin(t + step);
    auto s = newShape();
    s->drawBezierPath(TPointF::fromDouble(cx + r * c0, cy + r * s0),
                      TPointF::fromDouble(cx + r * (c0 - k * s0), cy + r * (s0 + k * c0)),
                      TPointF::fromDouble(cx + r * (c1 + k * s1), cy + r * (s1 - k * c1)),
                      TPointF::fromDouble(cx + r * c1, cy + r * s1));
    out.push_back(std::move(s));
  }
}

// A rectangle from (0,0) with corners rounded by r (0: square); the top
// corners may stay square.
TShapes roundedRect(double w, double h, double r, bool squareTop = false) {
  TShapes s;
  const double rt = squareTop ? 0 : r;
  line(s, rt, 0, w - rt, 0);
  if (rt > 0) arc(s, w - rt, rt, rt, -90, 90);
  line(s, w, rt, w, h - r);
  if (r > 0) arc(s, w - r, h - r, r, 0, 90);
  line(s, w - r, h, r, h);
  if (r > 0) arc(s, r, h - r, r, 90, 90);
  line(s, 0, h - r, 0, rt);
  if (rt > 0) arc(s, rt, rt, rt, 180, 90);
  return s;
}

TShapes cardPocket(double w, double h, double notch) {
  TShapes s;
  line(s, 0, 0, w / 2 - notch, 0);
  arc(s, w / 2, 0, notch, 180, -180);
  line(s, w / 2 + notch, 0, w, 0);
  line(s, w, 0, w, h);
  line(s, w, h, 0, h);
  line(s, 0, h, 0, 0);
  return s;
}

TShapes stadium(double w, double h) {
  TShapes s;
  const double r = h / 2;
  line(s, r, 0, w - r, 0);
  arc(s, w - r, r, r, -90, 180);
  line(s, w - r, h, r, h);
  arc(s, r, r, r, 90, 180);
  return s;
}

TShapes circle(double d) {
  TShapes s;
  arc(s, d / 2, d / 2, d / 2, 180, 360);
  return s;
}

TShapes ellipse(double w, double h) {
  TShapes s;
  const double k = 4.0 / 3.0 * std::tan(std::numbers::pi / 8.0);
  const double rx = w / 2, ry = h / 2, kx = k * rx, ky = k * ry;
  auto quarter = [&](double x0, double y0, double x1, double y1, double x2, double y2, double x3, double y3) {
    auto c = newShape();
    c->drawBezierPath(TPointF::fromDouble(x0, y0), TPointF::fromDouble(x1, y1), TPointF::fromDouble(x2, y2),
                      TPointF::fromDouble(x3, y3));
    s.push_back(std::move(c));
  };
  quarter(0, ry, 0, ry - ky, rx - kx, 0, rx, 0);
  quarter(rx, 0, rx + kx, 0, w, ry - ky, w, ry);
  quarter(w, ry, w, ry + ky, rx + kx, h, rx, h);
  quarter(rx, h, rx - kx, h, 0, ry + ky, 0, ry);
  return s;
}

TShapes bookmark(double w, double h, double point) {
  TShapes s;
  line(s, 0, 0, w, 0);
  line(s, w, 0, w, h);
  line(s, w, h, w / 2, h - point);
  line(s, w / 2, h - point, 0, h);
  line(s, 0, h, 0, 0);
  return s;
}

TShapes polygon(int sides, double d) {
  TShapes s;
  const double r = d / 2;
  for (int i = 0; i < sides; ++i) {
    const double a0 = 2 * std::numbers::pi * i / sides, a1 = 2 * std::numbers::pi * (i + 1) / sides;
    line(s, r + r * std::cos(a0), r + r * std::sin(a0), r + r * std::cos(a1), r + r * std::sin(a1));
  }
  return s;
}

// The same text always gives the same identifier, so that a template keeps
// its file from one release to the next.
TGUID stableGuid(const std::string& name) {
  TGUID g;
  uint64_t h1 = 1469598103934665603ull, h2 = 1099511628211ull * 7919u;
  for (const char c : "pelwright-template:" + name) {
    h1 = (h1 ^ static_cast<unsigned char>(c)) * 1099511628211ull;
    h2 = (h2 ^ static_cast<unsigned char>(c)) * 1099511628211ull + 0x9E3779B97F4A7C15ull;
  }
  for (int i = 0; i < 8; ++i) {
    g.bytes[size_t(i)] = static_cast<uint8_t>(h1 >> (8 * i));
    g.bytes[size_t(i + 8)] = static_cast<uint8_t>(h2 >> (8 * i));
  }
  g.bytes[6] = static_cast<uint8_t>((g.bytes[6] & 0x0F) | 0x40);
  g.bytes[8] = static_cast<uint8_t>((g.bytes[8] & 0x3F) | 0x80);
  return g;
}

struct TFolder {
  const char* id;
  const char* englishName;
  std::vector<std::pair<const char*, TShapes>> templates;
};

std::vector<TFolder> drawFolders() {
  std::vector<TFolder> f(6);
  const char* names[6] = {"Wallets", "Card cases", "Key cases", "Bags and pouches", "Small leather goods",
                          "Basic shapes"};
  for (int i = 0; i < 6; ++i) {
    f[size_t(i)].id = kBuiltinFolderIds[i];
    f[size_t(i)].englishName = names[i];
  }
  f[0].templates.emplace_back("Long wallet body 190 x 95", roundedRect(190, 95, 6));
  f[0].templates.emplace_back("Bifold wallet body 220 x 95", roundedRect(220, 95, 5));
  f[1].templates.emplace_back("Card case body 110 x 72", roundedRect(110, 72, 4));
  f[1].templates.emplace_back("Card pocket 96 x 60", cardPocket(96, 60, 12));
  f[2].templates.emplace_back("Key case body 115 x 75", roundedRect(115, 75, 8));
  f[2].templates.emplace_back("Key fob 110 x 25", stadium(110, 25));
  f[3].templates.emplace_back("Pouch front 160 x 110", roundedRect(160, 110, 20, true));
  f[3].templates.emplace_back("Pouch gusset 30 x 320", roundedRect(30, 320, 0));
  f[4].templates.emplace_back("Coaster 100", circle(100));
  f[4].templates.emplace_back("Bookmark 35 x 150", bookmark(35, 150, 12));
  f[5].templates.emplace_back("Circle 50", circle(50));
  f[5].templates.emplace_back("Rectangle 100 x 50", roundedRect(100, 50, 0));
  f[5].templates.emplace_back("Rounded rectangle 100 x 60", roundedRect(100, 60, 5));
  f[5].templates.emplace_back("Ellipse 80 x 50", ellipse(80, 50));
  f[5].templates.emplace_back("Hexagon 60", polygon(6, 60));
  return f;
}

}  // namespace

std::vector<TZipEntry> builtinTemplateEntries() {
  std::vector<TZipEntry> entries;
  std::vector<std::unique_ptr<TPW_Path>> all;
  TRepositoryTreeItem root(&all);
  root.FID = "{5B0E2C1A-7D3F-4A8B-9C6E-1F2A3B4C5D6E}";
  std::string index;
  for (TFolder& folder : drawFolders()) {
    auto node = std::make_unique<TRepositoryTreeItem>(&all);
    node->FID = folder.id;
    node->FName = folder.englishName;
    for (auto& [name, shapes] : folder.templates) {
      std::vector<const TPW_Path*> parts;
      for (const auto& s : shapes) parts.push_back(s.get());
      auto t = mergeIntoTemplate(parts, name);
      t->FGUID = stableGuid(name);
      t->FSelected = false;
      t->FID = 1;
      const std::string guid = t->FGUID.toString();
      entries.push_back({"repository/" + guid + kTemplateExtension, templateFileText(*t), kBuiltinTemplatesStamp});
      index += guid + "\r\n";
      node->FShapes.push_back(t.get());
      all.push_back(std::move(t));
    }
    root.FTreeItems.push_back(std::move(node));
  }
  entries.push_back({kRepositoryIndexFileName, index, kBuiltinTemplatesStamp});
  TJsonTextWriter w(4096);
  writeJsonValue(w, root.toJson());
  entries.push_back({kRepositoryTreeFileName, std::string(kUtf8Bom) + w.text() + "\r\n", kBuiltinTemplatesStamp});
  return entries;
}

std::string builtinTemplateArchiveText() { return base64Encode(writeZipArchive(builtinTemplateEntries())) + "\n"; }
