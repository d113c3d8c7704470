#include "platform/dialogs.h"

#include <cstdio>

#include "platform/picture_decoder.h"

void THeadlessDialogs::showMessage(const std::string& text) {
  std::fprintf(stderr, "pelwright: %s\n", text.c_str());
  std::fflush(stderr);
}

TDialogAnswer THeadlessDialogs::askYesNo(const std::string& text, TDialogAnswer keepsData) {
  std::fprintf(stderr, "pelwright: %s -> %s\n", text.c_str(), keepsData == TDialogAnswer::Yes ? "Yes" : "No");
  std::fflush(stderr);
  return keepsData;
}

TDialogAnswer THeadlessDialogs::askYesNoCancel(const std::string& text, TDialogAnswer keepsData) {
  const char* answer = keepsData == TDialogAnswer::Yes ? "Yes" : keepsData == TDialogAnswer::No ? "No" : "Cancel";
  std::fprintf(stderr, "pelwright: %s -> %s\n", text.c_str(), answer);
  std::fflush(stderr);
  return keepsData;
}

std::string THeadlessDialogs::openFileName(const std::string&, const std::string&) { return {}; }

std::string THeadlessDialogs::saveFileName(const std::string&, const std::string&, const std::string&) {
  return {};
}

TDialogAnswer TScriptedDialogs::next(const std::string& text, TDialogAnswer keepsData) {
  FQuestions.push_back(text);
  if (FAnswers.empty()) return keepsData;
  const TDialogAnswer a = FAnswers.front();
  FAnswers.pop_front();
  return a;
}

std::string TScriptedDialogs::nextName() {
  if (FFileNames.empty()) return {};
  std::string n = FFileNames.front();
  FFileNames.pop_front();
  return n;
}

TDialogAnswer TScriptedDialogs::askYesNo(const std::string& text, TDialogAnswer keepsData) {
  return next(text, keepsData);
}

TDialogAnswer TScriptedDialogs::askYesNoCancel(const std::string& text, TDialogAnswer keepsData) {
  return next(text, keepsData);
}

std::string TScriptedDialogs::openFileName(const std::string& folder, const std::string&) {
  FFileDialogs.push_back("open:" + folder);
  return nextName();
}

std::string TScriptedDialogs::saveFileName(const std::string& folder, const std::string& name,
                                           const std::string&) {
  FFileDialogs.push_back("save:" + folder + "|" + name);
  return nextName();
}

std::vector<int> IDialogs::choosePdfPages(IPdfPages& document, int maxPages) {
  if (document.pageCount() > 0 && maxPages > 0) return {0};
  return {};
}

std::optional<std::string> TScriptedDialogs::inputPassword(const std::string& caption, const std::string& prompt) {
  return inputText(caption, prompt, "");
}

std::string TScriptedDialogs::chooseFolder(const std::string& title, const std::string&) {
  FFileDialogs.push_back("folder:" + title);
  if (FFolders.empty()) return {};
  std::string f = FFolders.front();
  FFolders.pop_front();
  return f;
}

std::vector<int> TScriptedDialogs::choosePdfPages(IPdfPages& document, int maxPages) {
  if (FPdfPages.empty()) return IDialogs::choosePdfPages(document, maxPages);
  std::vector<int> pages = FPdfPages.front();
  FPdfPages.pop_front();
  return pages;
}

std::optional<std::string> TScriptedDialogs::inputText(const std::string& caption, const std::string& prompt,
                                                       const std::string&) {
  FQuestions.push_back(caption + ": " + prompt);
  if (FInputs.empty()) return std::nullopt;
  std::string line = FInputs.front();
  FInputs.pop_front();
  return line;
}
