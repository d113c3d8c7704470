#include "stitching/iron_file.h"

#include <sys/stat.h>

#include <stdexcept>

#include "platform/safe_file.h"
#include "stitching/system_irons.h"

namespace {

constexpr const char* kBOM = "\xEF\xBB\xBF";
constexpr const char* kFileVersion = "3.6.1";

bool fileExists(const std::string& filename) {
  struct stat st {};
  return ::stat(filename.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

}  // namespace

std::string prickingIronFileText(const TPrickingIronGroups& groups) {
  nlohmann::ordered_json root = nlohmann::ordered_json::object();
  root["meta"] = {{"file_type", kPrickingIronFileType}, {"version", kFileVersion}};
  nlohmann::ordered_json arr = nlohmann::ordered_json::array();
  for (const auto& g : groups) arr.push_back(g->toJsonObject());
  root["pricking_iron_groups"] = std::move(arr);
  return std::string(kBOM) +
         root.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

std::vector<std::unique_ptr<TPrickingIronGroup>> prickingIronGroupsFromText(const std::string& text) {
  std::string_view body(text);
  if (body.substr(0, 3) == kBOM) body.remove_prefix(3);
  nlohmann::ordered_json root;
  try {
    root = nlohmann::ordered_json::parse(body);
  } catch (const nlohmann::json::parse_error& e) {
    throw std::runtime_error(std::string("it is not valid JSON (") + e.what() + ")");
  }
  if (!root.is_object()) throw std::runtime_error("it does not hold a JSON object");

  std::vector<std::unique_ptr<TPrickingIronGroup>> out;
  auto arr = root.find("pricking_iron_groups");
  if (arr == root.end() || !arr->is_array()) return out;
  for (size_t i = 0; i < arr->size(); ++i) {
    auto g = std::make_unique<TPrickingIronGroup>(false);
    try {
      g->loadJson((*arr)[i]);
    } catch (const std::exception& e) {
      throw std::runtime_error("group " + std::to_string(i + 1) + ": " + e.what());
    }
    out.push_back(std::move(g));
  }
  return out;
}

void writePrickingIronFile(const std::string& filename, const TPrickingIronGroups& groups) {
  writeFileAtomically(filename, prickingIronFileText(groups));
}

TIronStartup loadPrickingIronsAtStartup(TPrickingIronGroups& groups, const std::string& filename,
                                        const std::string& langID) {
  TIronStartup result;
  if (fileExists(filename)) {
    std::string text;
    try {
      text = readWholeFile(filename);
      groups.append(prickingIronGroupsFromText(text));
      result.FState = TIronFileState::Read;
      result.FGroupsRead = !groups.empty();
    } catch (const std::exception& e) {
      groups.clear();
      result.FState = TIronFileState::Damaged;
      result.FMessage = "The pricking iron file \"" + filename + "\" could not be read: " +
                        e.what() + ". The built-in pricking irons are used instead.";
      const std::string keep = filename + ".damaged";
      try {
        if (!text.empty()) {
          writeFileAtomically(keep, text);
          result.FMessage += " The damaged file was kept as \"" + keep + "\".";
        }
      } catch (const std::exception&) {
        // The message already names the file; without a copy the user can
        // still save it by hand before leaving the program.
      }
    }
  }
  if (groups.empty()) groups.append(buildSystemIronGroups(langID));
  return result;
}

void addNewSystemIronsOnce(TPrickingIronGroups& groups, const TIronStartup& startup,
                           bool& newPrickingIronsAdded, const std::string& langID) {
  if (startup.FGroupsRead && !newPrickingIronsAdded)
    groups.append(buildSystemIronGroups(langID, true));
  newPrickingIronsAdded = true;
}
