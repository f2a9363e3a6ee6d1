#pragma once
// What the program does at start besides making its window: the toolkit's own texts
// in Japanese, and files that come from outside opened in the one window.
#include <QStringList>

class QCoreApplication;

namespace lirenza {

class MainWindow;

// The toolkit's standard buttons and dialogs speak Japanese as the rest of the window
// does, whatever the user's locale. False when the toolkit's Japanese texts are not
// installed; the toolkit's English stays then.
bool InstallToolkitTranslation(QCoreApplication& app);

// Opens each file in turn as a document (the close question comes first over unsaved
// changes) and brings the window to the front; with no files it only comes forward.
void ReceiveDocuments(MainWindow& window, const QStringList& files);

}  // namespace lirenza
