// The one overlay edit field shared by all number boxes: a click on a box
// lays an edit over it in which the user types a length or an expression
// ("120/3+2"); leaving the edit reads it and gives the box the value.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

class INumberBox;

// The edit widget as the shell sees it; the window makes real ones.
class IOverlayEdit {
 public:
  virtual ~IOverlayEdit() = default;
  virtual std::string text() const = 0;
  virtual void setText(const std::string& text) = 0;
  // 1 after Esc: the edit is leaving without taking its text.
  int FTag = 0;
  // Takes the keyboard focus away; the widget then reports OnExit.
  virtual void releaseFocus() = 0;
  virtual void hide() = 0;
};

class IOverlayEditHost {
 public:
  virtual ~IOverlayEditHost() = default;
  // A new edit over the box: same parent, place and size, its text shown,
  // typing limited to "0123456789.+-/*".
  virtual std::unique_ptr<IOverlayEdit> createEditOver(INumberBox& box) = 0;
  // Runs fn later from the toolkit's queue (focusing, freeing).
  virtual void runLater(std::function<void()> fn) = 0;
  // Focuses the edit and selects its text.
  virtual void focusAndSelectAll(IOverlayEdit& edit) = 0;
};

// The characters an overlay edit accepts.
inline constexpr const char* kOverlayEditCharacters = "0123456789.+-/*";

class TGlobalEdit {
 public:
  explicit TGlobalEdit(IOverlayEditHost& host) : FHost(host) {}

  enum class TKey { Other, Enter, Escape };

  // The click handler of every registered box.
  void NumberBoxOnClick(INumberBox& nb) { setNumberBox(nb); }
  IOverlayEdit* setNumberBox(INumberBox& nb);
  // Enter leaves the edit; Esc restores the box's text and leaves without
  // taking it. Returns true when the key was used (and must be cleared).
  bool OnKeyDown(IOverlayEdit& edit, TKey key);
  void OnMouseLeave(IOverlayEdit& edit);
  // Reads the text as an expression; a bad one leaves the box as it was,
  // without a message. Then the edit goes.
  void OnExit(IOverlayEdit& edit);

  INumberBox* FNumberBox = nullptr;
  IOverlayEdit* FEdit = nullptr;
  bool FInOnExit = false;

 private:
  IOverlayEditHost& FHost;
  // Edits waiting for their queued release; owned until then.
  std::vector<std::unique_ptr<IOverlayEdit>> FLiving;
  void release(IOverlayEdit* edit);
};
