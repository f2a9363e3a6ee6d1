#include "window/close_question.h"

#include <QMessageBox>
#include <QPushButton>

namespace lirenza {

CloseQuestion::Answer MessageBoxCloseQuestion::Ask(QWidget* window, const QString& message,
                                                   const QString& explanation, const QString& saveCaption,
                                                   const QString& dontSaveCaption) {
  QMessageBox box(QMessageBox::Warning, QString(), message, QMessageBox::NoButton, window);
  box.setInformativeText(explanation);
  box.setWindowModality(Qt::WindowModal);
  QPushButton* save = box.addButton(saveCaption, QMessageBox::AcceptRole);
  QPushButton* dontSave = box.addButton(dontSaveCaption, QMessageBox::DestructiveRole);
  QPushButton* cancel = box.addButton(QMessageBox::Cancel);
  box.setDefaultButton(dontSave);
  box.setEscapeButton(cancel);
  box.exec();
  if (box.clickedButton() == save) return Answer::Save;
  if (box.clickedButton() == dontSave) return Answer::DontSave;
  return Answer::Cancel;
}

}  // namespace lirenza
