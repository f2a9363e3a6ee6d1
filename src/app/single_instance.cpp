#include "app/single_instance.h"

#include <unistd.h>

#include <QDataStream>
#include <QDir>
#include <QFileInfo>
#include <QLocalSocket>
#include <QStandardPaths>
#include <utility>

namespace lirenza {

namespace {

// The message is one list of paths; the listener answers this byte once it holds it,
// so the sender never leaves before its files arrived.
constexpr char kTaken = '+';
constexpr auto kStreamVersion = QDataStream::Qt_6_4;

}  // namespace

SingleInstance::SingleInstance(QString serverName, QObject* parent)
    : QObject(parent), serverName_(std::move(serverName)) {
  // Only this user may connect. With an access option the toolkit makes the socket
  // aside and moves it into place, which also replaces one left behind by a program
  // that died (no program answered it, or HandOver would have reached it).
  server_.setSocketOptions(QLocalServer::UserAccessOption);
  connect(&server_, &QLocalServer::newConnection, this, [this] {
    while (QLocalSocket* socket = server_.nextPendingConnection()) {
      connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
      connect(socket, &QLocalSocket::readyRead, this, [this, socket] { Receive(socket); });
      Receive(socket);  // the message may be in before the connection is handled
    }
  });
}

QString SingleInstance::DefaultServerName() {
  QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
  if (folder.isEmpty()) folder = QDir::tempPath();
  return QDir(folder).filePath(QStringLiteral("lirenza-%1").arg(::getuid()));
}

SingleInstance::Start SingleInstance::HandOverOrListen(const QStringList& files) {
  if (HandOver(files)) return Start::HandedOver;
  return Listen() ? Start::Listening : Start::Alone;
}

bool SingleInstance::HandOver(const QStringList& files, int timeoutMs) {
  QLocalSocket socket;
  socket.connectToServer(serverName_);
  if (!socket.waitForConnected(timeoutMs)) return false;
  QByteArray message;
  QDataStream out(&message, QIODevice::WriteOnly);
  out.setVersion(kStreamVersion);
  out << files;
  socket.write(message);
  if (!socket.waitForBytesWritten(timeoutMs)) return false;
  while (socket.bytesAvailable() == 0)
    if (!socket.waitForReadyRead(timeoutMs)) return false;
  char answer = 0;
  return socket.getChar(&answer) && answer == kTaken;
}

bool SingleInstance::Listen() { return server_.listen(serverName_); }

void SingleInstance::Receive(QLocalSocket* socket) {
  QDataStream in(socket);
  in.setVersion(kStreamVersion);
  in.startTransaction();
  QStringList files;
  in >> files;
  if (!in.commitTransaction()) return;  // the rest is still on its way
  socket->putChar(kTaken);
  socket->flush();
  socket->disconnectFromServer();
  emit documentsReceived(files);
}

QStringList AbsoluteFiles(const QStringList& arguments) {
  QStringList files;
  for (const QString& argument : arguments) files << QFileInfo(argument).absoluteFilePath();
  return files;
}

}  // namespace lirenza
