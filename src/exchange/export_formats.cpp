// The formats of the conversion, one row each: the extension, a line for
// --help, the options it takes, and the function that makes its files.
#include <iostream>

#include "app/frm_pelw.h"
#include "document/project_json.h"
#include "exchange/export_command.h"
#include "exchange/stl_export.h"

namespace {

std::string exportProject(TExportJob& job) {
  job.FFiles.emplace_back(job.FOutput, projectFileText(*job.FForm.PathList, job.FForm.FBackdrops));
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
      {".stl",
       "binary STL solid of the closed outlines; settings from STLExport.ini",
       {{"--stl-mode", {"pattern", "jig"}, "the plate of the pattern, or the positioning jig"}},
       exportStl},
      {".pwc", "Pelwright project", {}, exportProject},
  };
  return formats;
}
