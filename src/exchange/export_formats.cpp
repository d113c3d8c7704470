// The formats of the conversion, one row each: the extension, a line for
// --help, the options it takes, and the function that makes its files.
#include "app/frm_pelw.h"
#include "document/project_json.h"
#include "exchange/export_command.h"
#include "exchange/pdf_export.h"

namespace {

std::string exportProject(TExportJob& job) {
  job.FFiles.emplace_back(job.FOutput, projectFileText(*job.FForm.PathList, job.FForm.FBackdrops));
  return {};
}

}  // namespace

const std::vector<TExportFormat>& exportFormats() {
  static const std::vector<TExportFormat> formats{
      {".pdf", "PDF at the paper's true size, tiled when the drawing is larger", pdfExportOptions(), exportPdf},
      {".pwc", "Pelwright project", {}, exportProject},
  };
  return formats;
}
