#include "exchange/stl_export.h"

#include "app/multi_lang.h"
#include "exchange/stl_file.h"

TStlResult buildStlSolid(const std::vector<const TPW_Path*>& shapes, const TSTLExportSettings& settings) {
  const TStlOutlines outlines = prepareStlOutlines(shapes, settings);
  TStlResult r;
  if (outlines.TooDetailed) r.ErrorKey = "stl_msg_too_complex";
  else if (settings.TemplateMode) r = buildJigSolid(outlines, settings.jigSettings());
  else r = buildPatternSolid(outlines, settings);
  r.OpenShapes = outlines.OpenShapes;
  return r;
}

std::string stlStatusText(const TStlResult& r, bool openShapesMatter, const TMultiLang& lang,
                          const std::string& langID) {
  std::vector<std::string> lines;
  if (openShapesMatter && r.OpenShapes > 0) lines.push_back(lang.getTranslation(langID, "stl_msg_open_shape_warning"));
  if (!r.ErrorKey.empty()) lines.push_back(lang.getTranslation(langID, r.ErrorKey));
  for (const std::string& w : r.Warnings) lines.push_back(w);
  if (r.FailedRegions > 0)
    lines.push_back(fillPhrase(lang.getTranslation(langID, "stl_msg_failed_regions"), {std::to_string(r.FailedRegions)}));
  if (r.SkippedRegions > 0)
    lines.push_back(fillPhrase(lang.getTranslation(langID, "stl_msg_skipped_regions"), {std::to_string(r.SkippedRegions)}));
  std::string text;
  for (const std::string& l : lines) text += (text.empty() ? "" : "\n") + l;
  return text;
}

std::string stlFilesFor(const TStlResult& r, const TSTLExportSettings& settings, const std::string& file,
                        std::vector<std::pair<std::string, std::string>>& files) {
  files.clear();
  const TWeldedMesh body = weldTriangles(r.Body);
  if (body.Facets.empty()) return settings.TemplateMode ? "stl_msg_no_triangles_to_save" : "stl_msg_no_mesh_to_save";
  if (!checkMesh(body).closed()) return "stl_msg_not_closed";
  files.emplace_back(file, binaryStlBytes(body));
  if (!settings.TemplateMode && settings.MultiColorPrint && !r.Text.empty()) {
    const TWeldedMesh text = weldTriangles(r.Text);
    if (!checkMesh(text).closed()) {
      files.clear();
      return "stl_msg_not_closed";
    }
    files.emplace_back(stlTextFileName(file), binaryStlBytes(text));
  }
  return {};
}

std::string stlSavedMessage(const std::vector<std::pair<std::string, std::string>>& files, const TMultiLang& lang,
                            const std::string& langID) {
  if (files.size() == 2)
    return lang.getTranslation(langID, "stl_msg_multicolor_saved") + "\n" + files[0].first + "\n" + files[1].first;
  return lang.getTranslation(langID, "stl_msg_saved") + "\n" + (files.empty() ? std::string() : files[0].first);
}
