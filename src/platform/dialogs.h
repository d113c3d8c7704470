// Message boxes, questions and file dialogs, as the controller needs them.
// The window provides native ones; --headless writes messages to the
// standard error stream and answers each question with the answer that
// keeps the user's data; tests script the answers.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

class IPdfPages;

enum class TDialogAnswer { Yes, No, Cancel };

class IDialogs {
 public:
  virtual ~IDialogs() = default;
  virtual void showMessage(const std::string& text) = 0;
  // Yes or No. `keepsData` is the answer that changes nothing the user
  // made (No to "delete the duplicates?"): the one taken without a person.
  virtual TDialogAnswer askYesNo(const std::string& text, TDialogAnswer keepsData) = 0;
  // Yes, No or Cancel, as the save question.
  virtual TDialogAnswer askYesNoCancel(const std::string& text, TDialogAnswer keepsData) = 0;
  // A project file to open or to save to; empty when the user cancelled.
  // `folder` and `name` preset the dialog; `extension` is ".pwc".
  virtual std::string openFileName(const std::string& folder, const std::string& extension) = 0;
  virtual std::string saveFileName(const std::string& folder, const std::string& name,
                                   const std::string& extension) = 0;

  // ---- libraries: passwords, folders and PDF pages ----
  // A password, typed unseen; nothing when cancelled or without a person.
  virtual std::optional<std::string> inputPassword(const std::string& caption, const std::string& prompt) {
    (void)caption, (void)prompt;
    return std::nullopt;
  }
  // A folder; empty when cancelled.
  virtual std::string chooseFolder(const std::string& title, const std::string& start) {
    (void)title, (void)start;
    return {};
  }
  // The pages of a PDF to take as backdrops (zero-based), at most
  // maxPages; none when cancelled. Without a person: the first page.
  virtual std::vector<int> choosePdfPages(IPdfPages& document, int maxPages);
  // One line of text, preset with `preset`; nothing when cancelled. Without
  // a person there the question is cancelled.
  virtual std::optional<std::string> inputText(const std::string& caption, const std::string& prompt,
                                               const std::string& preset) {
    (void)caption, (void)prompt, (void)preset;
    return std::nullopt;
  }
};

// No person there: messages go to the standard error stream, questions get
// their data-keeping answer, file dialogs are cancelled.
class THeadlessDialogs : public IDialogs {
 public:
  void showMessage(const std::string& text) override;
  TDialogAnswer askYesNo(const std::string& text, TDialogAnswer keepsData) override;
  TDialogAnswer askYesNoCancel(const std::string& text, TDialogAnswer keepsData) override;
  std::string openFileName(const std::string& folder, const std::string& extension) override;
  std::string saveFileName(const std::string& folder, const std::string& name,
                           const std::string& extension) override;
};

// Answers given in advance, for tests. Every call is recorded; a question
// with no answer left takes its data-keeping answer, a file dialog with no
// name left is cancelled.
class TScriptedDialogs : public IDialogs {
 public:
  std::deque<TDialogAnswer> FAnswers;
  std::deque<std::string> FFileNames;
  std::vector<std::string> FMessages;   // showMessage texts
  std::vector<std::string> FQuestions;  // texts of both kinds of question
  std::vector<std::string> FFileDialogs;  // "open:<folder>" or "save:<folder>|<name>"
  std::deque<std::string> FFolders;        // chooseFolder answers
  std::deque<std::vector<int>> FPdfPages;  // choosePdfPages answers; none left: the first page
  std::deque<std::string> FInputs;  // lines typed; none left: cancelled

  void showMessage(const std::string& text) override { FMessages.push_back(text); }
  TDialogAnswer askYesNo(const std::string& text, TDialogAnswer keepsData) override;
  TDialogAnswer askYesNoCancel(const std::string& text, TDialogAnswer keepsData) override;
  std::string openFileName(const std::string& folder, const std::string& extension) override;
  std::string saveFileName(const std::string& folder, const std::string& name,
                           const std::string& extension) override;
  // Takes its answer from FInputs, as inputText does.
  std::optional<std::string> inputPassword(const std::string& caption, const std::string& prompt) override;
  std::string chooseFolder(const std::string& title, const std::string& start) override;
  std::vector<int> choosePdfPages(IPdfPages& document, int maxPages) override;
  std::optional<std::string> inputText(const std::string& caption, const std::string& prompt,
                                       const std::string& preset) override;

 private:
  TDialogAnswer next(const std::string& text, TDialogAnswer keepsData);
  std::string nextName();
};
