// The program's start: a second program started by the same user hands its files to
// the window already open and ends without a window of its own, also where the first
// one's socket was left behind by a program that died; and the toolkit's own buttons
// speak Japanese.
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QDialogButtonBox>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>

#include "app/app_start.h"
#include "app/single_instance.h"
#include "files/score_file.h"
#include "window_fixture.h"

using namespace lirenza;

namespace {

// A socket file with nobody behind it, as a program killed while listening leaves.
bool LeaveDeadSocket(const QString& path) {
  const QByteArray name = QFile::encodeName(path);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (name.size() >= static_cast<int>(sizeof address.sun_path)) return false;
  std::copy(name.begin(), name.end(), address.sun_path);
  const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
  const bool bound = socket >= 0 && ::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
  if (socket >= 0) ::close(socket);
  return bound && QFileInfo::exists(path);
}

}  // namespace

class AppStartTest : public testing::WindowTest {
  Q_OBJECT

  std::unique_ptr<QTemporaryDir> dir;

  QString Path(const QString& name) const { return dir->filePath(name); }

 private slots:
  void init() {
    dir = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(dir->path()).mkpath(QStringLiteral("run")) && QDir(dir->path()).mkpath(QStringLiteral("home")) &&
            QDir(dir->path()).mkpath(QStringLiteral("scores")));
    QFile::setPermissions(Path(QStringLiteral("run")), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    // The socket's folder, here and in the program the test starts.
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(Path(QStringLiteral("run"))));
  }

  void laterProgramHandsOver_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("deadSocketLeft");
    QTest::addColumn<QString>("opened");  // relative to the scores folder; empty: none
    QTest::newRow("a file named relative to where it was started")
        << QStringList{QStringLiteral("tune one.note")} << false << QStringLiteral("tune one.note");
    QTest::newRow("a file, over the socket of a program that died")
        << QStringList{QStringLiteral("../scores/tune one.note")} << true << QStringLiteral("tune one.note");
    QTest::newRow("no file: the window only comes forward") << QStringList{} << true << QString();
  }

  void laterProgramHandsOver() {
    QFETCH(QStringList, arguments);
    QFETCH(bool, deadSocketLeft);
    QFETCH(QString, opened);
    ScoreFile score;
    score.title = "handed over";
    testing::WriteBytes(Path(QStringLiteral("scores/tune one.note")), ScoreFileText(score));
    if (deadSocketLeft) QVERIFY(LeaveDeadSocket(SingleInstance::DefaultServerName()));

    MakeWindow();
    window->hide();
    SingleInstance first(SingleInstance::DefaultServerName());
    QCOMPARE(first.HandOverOrListen({}), SingleInstance::Start::Listening);
    QStringList received;
    connect(&first, &SingleInstance::documentsReceived, window.get(), [&](const QStringList& files) {
      received << files;
      ReceiveDocuments(*window, files);
    });

    QProcess later;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), Path(QStringLiteral("home")));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    later.setProcessEnvironment(environment);
    // Started from a folder of its own, so a path it did not make absolute misses.
    later.setWorkingDirectory(Path(deadSocketLeft ? QStringLiteral("home") : QStringLiteral("scores")));
    later.start(QStringLiteral(LIRENZA_PROGRAM), arguments);
    QVERIFY(later.waitForStarted());
    // A program that kept going has made a window of its own.
    QTRY_VERIFY_WITH_TIMEOUT(later.state() == QProcess::NotRunning, 15000);
    QCOMPARE(later.exitStatus(), QProcess::NormalExit);
    QCOMPARE(later.exitCode(), 0);

    QTRY_VERIFY(window->isVisible());
    if (opened.isEmpty()) {
      QCOMPARE(received, QStringList{});
      QVERIFY(window->State().documentPath.isEmpty());
    } else {
      QCOMPARE(window->State().documentPath, Path(QStringLiteral("scores/") + opened));
      QCOMPARE(TheStaff().title, score.title);
    }
  }

  void toolkitButtonsSpeakJapanese() {
    QVERIFY2(InstallToolkitTranslation(*qApp), "the toolkit's Japanese texts are not installed");
    QDialogButtonBox box(QDialogButtonBox::Cancel);
    QCOMPARE(box.button(QDialogButtonBox::Cancel)->text(), QStringLiteral("キャンセル"));
    QMessageBox message(QMessageBox::Question, QString(), QString(), QMessageBox::Cancel);
    QCOMPARE(message.button(QMessageBox::Cancel)->text(), QStringLiteral("キャンセル"));
  }
};

QTEST_MAIN(AppStartTest)
#include "app_start_test.moc"
