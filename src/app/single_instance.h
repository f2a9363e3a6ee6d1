#pragma once
// One window for every score the user opens: the first program started listens on a
// per-user local socket; one started later hands its files over to it and leaves.
#include <QLocalServer>
#include <QObject>
#include <QString>
#include <QStringList>

namespace lirenza {

class SingleInstance : public QObject {
  Q_OBJECT

 public:
  enum class Start {
    HandedOver,  // another program took the files: this one has nothing left to do
    Listening,   // this program is the one; later ones reach it through documentsReceived
    Alone,       // no other program answered and the socket could not be made either
  };

  // serverName: a socket path, or a name the toolkit places in its temporary folder.
  explicit SingleInstance(QString serverName, QObject* parent = nullptr);

  // The socket in the user's runtime folder, so two users of one computer each have
  // their own window.
  static QString DefaultServerName();

  // Hands files (absolute paths; none asks only for the window to come forward) to a
  // program already listening, or else starts listening. A socket left behind by a
  // program that died is taken over.
  Start HandOverOrListen(const QStringList& files);

  // What came through, false when no listener answered and took the message in time.
  bool HandOver(const QStringList& files, int timeoutMs = 3000);
  bool Listen();

 signals:
  // A later program's files, in the order it was given them; empty: just come forward.
  void documentsReceived(const QStringList& files);

 private:
  void Receive(class QLocalSocket* socket);

  QString serverName_;
  QLocalServer server_;
};

// The files named on a command line, each made absolute against the folder the
// program was started in, since the program that opens them may stand elsewhere.
QStringList AbsoluteFiles(const QStringList& arguments);

}  // namespace lirenza
