// The formats of the conversion, one row each: the extension, a line for
// --help, the options it takes, and the function that makes its files.
#include <iostream>

#include "app/frm_pelw.h"
#include "document/project_json.h"
#include "exchange/dxf_export.h"
#include "exchange/export_command.h"
#include "exchange/pdf_export.h"
#include "exchange/stl_export.h"
#include "exchange/svg_export.h"

namespace {

const TExportOption kHolesAsDots{"--holes-as-dots", {}, "stitching holes as circles of the options' dot size"};

// The options file's export settings and the dialog's defaults, with the
// command line's options over them.
TExportSettings commandSettings(const TExportJob& job) {
  TExportSettings s = exportSettingsFrom(job.FForm.FOptions);
  if (job.FArgs.has("--holes-as-dots")) s.FHolesAsDots = true;
  if (job.FArgs.has("--dxf-version")) s.FUseR14 = job.FArgs.value("--dxf-version") == "R14";
  if (job.FArgs.has("--dxf-flip-y")) s.FInvertY = true;
  return s;
}

std::string nothingToExport(const TExportJob& job) {
  return job.FForm.FMultiLang->getTranslation(job.FForm.FLangID, "NothingToExport");
}

std::string exportSvg(TExportJob& job) {
  std::string text = svgExportText(job.FForm.exportScene(), commandSettings(job));
  if (text.empty()) return nothingToExport(job);
  job.FFiles.emplace_back(job.FOutput, std::move(text));
  return {};
}

std::string exportDxf(TExportJob& job) {
  std::string text = dxfExportText(job.FForm.exportScene(), commandSettings(job));
  if (text.empty()) return nothingToExport(job);
  job.FFiles.emplace_back(job.FOutput, std::move(text));
  return {};
}

std::string exportProject(TExportJob& job) {
  job.FFiles.emplace_back(job.FOutput, projectFileText(*job.FForm.PathList, job.FForm.backdropsForFile()));
  return {};
}

// The solid of STLExport.ini's mode (or --stl-mode) from every closed
// outline of the drawing; warnings go to the standard error stream.
std::string exportStl(TExportJob& job) {
  TfrmPelw& f = job.FForm;
  TSTLExportSettings settings = readStlSettings(stlSettingsFile(f.FAppDataPath));
  if (job.FArgs.has("--stl-mode")) settings.TemplateMode = job.FArgs.value("--stl-mode") == "jig";
  const TStlResult r = buildStlSolid(stlSourceShapes(*f.PathList, false).Shapes, settings);
  if (!r.ErrorKey.empty()) return f.FMultiLang->getTranslation(f.FLangID, r.ErrorKey);
  if (const std::string key = stlFilesFor(r, settings, job.FOutput, job.FFiles); !key.empty())
    return f.FMultiLang->getTranslation(f.FLangID, key);
  const std::string notes = stlStatusText(r, false, *f.FMultiLang, f.FLangID);
  if (!notes.empty()) std::cerr << "pelwright: " << notes << "\n";
  return {};
}

}  // namespace

const std::vector<TExportFormat>& exportFormats() {
  static const std::vector<TExportFormat> formats{
      {".svg", "SVG drawing, true size in millimetres", {kHolesAsDots}, exportSvg},
      {".dxf",
       "DXF drawing in millimetres",
       {{"--dxf-version", {"R12", "R14"}, "R12: lines and circles; R14: arcs, ellipses, splines"},
        {"--dxf-flip-y", {}, "R12: turn y upwards (R14 always does)"},
        kHolesAsDots},
       exportDxf},
      {".pdf", "PDF at the paper's true size, tiled when the drawing is larger", pdfExportOptions(), exportPdf},
      {".stl",
       "binary STL solid of the closed outlines; settings from STLExport.ini",
       {{"--stl-mode", {"pattern", "jig"}, "the plate of the pattern, or the positioning jig"}},
       exportStl},
      {".pwc", "Pelwright project", {}, exportProject},
  };
  return formats;
}
