// The dialogs of export and import: the export options, the width of an
// imported picture, and file names of other programs' formats. The window
// provides Qt ones; without them (--headless, --export) the options stand
// as they are, the picture keeps its size and file dialogs are cancelled.
#pragma once

#include <functional>
#include <string>

// The export options dialog's values. The diameter is what the dialog
// shows: twice the stored dot radius.
struct TExportDialogValues {
  bool FHolesAsDots = true;
  double FDotDiameter = 1.0;
  bool FWithText = false;
  bool FWithTemplates = true;
  bool FInvertY = true;  // DXF only, and only for R12
  bool FUseR14 = true;   // DXF only
  bool FOnlySelected = false;
  bool FSkipHiddenLineTypes = true;
  bool FNoStrokeDash = true;
};

// A text of the dialogs by phrase key, in the program's language.
using TPhraseLookup = std::function<std::string(const std::string& key)>;

class IExchangeDialogs {
 public:
  virtual ~IExchangeDialogs() = default;
  // `type` is "SVG" or "DXF"; the DXF version and the y flip show for DXF
  // only. False when cancelled.
  virtual bool exportOptions(const std::string& type, const TPhraseLookup& phrase, TExportDialogValues& values) = 0;
  // A number the user types, preset to `value`; false when cancelled.
  virtual bool askNumber(const std::string& caption, const std::string& body, double& value) = 0;
  // `filter` as "SVG Format (*.svg)"; `extension` with its dot. Empty when
  // cancelled.
  virtual std::string saveFileName(const std::string& title, const std::string& filter, const std::string& folder,
                                   const std::string& name, const std::string& extension) = 0;
  virtual std::string openFileName(const std::string& filter, const std::string& folder) = 0;
  // A wait cursor while a file is read or written, between the dialogs.
  virtual void setBusy(bool /*busy*/) {}
};
