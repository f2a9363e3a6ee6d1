#pragma once
// The question the window asks before it closes over unsaved changes. A small
// interface so the tests can answer it without a dialog on screen.
#include <QString>

class QWidget;

namespace lirenza {

class CloseQuestion {
 public:
  enum class Answer { Save, DontSave, Cancel };
  virtual ~CloseQuestion() = default;
  // Asks over window: saveCaption and dontSaveCaption name the two answers besides
  // the toolkit's own Cancel; dontSave is the default.
  virtual Answer Ask(QWidget* window, const QString& message, const QString& explanation,
                     const QString& saveCaption, const QString& dontSaveCaption) = 0;
};

// The real one: a window-modal message box with the caution icon.
class MessageBoxCloseQuestion : public CloseQuestion {
 public:
  Answer Ask(QWidget* window, const QString& message, const QString& explanation, const QString& saveCaption,
             const QString& dontSaveCaption) override;
};

}  // namespace lirenza
