// The four buttons that hand the score to other programs and the slider that sets the
// computer's volume, on a launcher that starts nothing: each must start its own script
// (in a terminal found on PATH), and a script that fails is never spoken of.
#include <QSlider>
#include <QTemporaryDir>

#include "window/picture_canvas.h"
#include "window/process_launcher.h"
#include "window_fixture.h"

using namespace lirenza;
using layout::ControlId;

namespace {

const char* const kScripts[] = {"SetVolume", "PlayMidi.command", "MidiToAiff.command", "PlayAiff.command", "run-and-wait"};

void MakeProgram(const QString& path) {
  testing::WriteBytes(path, "#!/bin/sh\n");
  QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

}  // namespace

class ConversionTest : public testing::WindowTest {
  Q_OBJECT

  std::unique_ptr<QTemporaryDir> dir;
  QString bin, scripts;
  QByteArray oldPath;

  PictureCanvas* Button(int index) { return Get<PictureCanvas>(ControlId::ConversionButton, index); }
  QImage Shown(int index) { return Button(index)->ShownPicture(); }
  void Press(int index) { QTest::mousePress(Button(index), Qt::LeftButton); }
  void Release(int index) { QTest::mouseRelease(Button(index), Qt::LeftButton); }

 private slots:
  void initTestCase() { oldPath = qgetenv("PATH"); }
  void init() {
    // A PATH with only the desktop's terminal in it, and a scripts folder of programs that do nothing.
    dir = std::make_unique<QTemporaryDir>();
    bin = dir->filePath("bin"), scripts = dir->filePath("scripts");
    QDir().mkpath(bin), QDir().mkpath(scripts);
    MakeProgram(bin + "/x-terminal-emulator");
    for (const char* name : kScripts) MakeProgram(scripts + "/" + name);
    qputenv("PATH", bin.toLocal8Bit());
    qunsetenv("TERMINAL");
    qputenv("LIRENZA_SCRIPTS", scripts.toLocal8Bit());
    MakeWindow();
  }
  void cleanup() {
    window.reset();
    qputenv("PATH", oldPath);
    qunsetenv("LIRENZA_SCRIPTS");
  }

  void theProgramFindsItsOwnScripts() {
    qunsetenv("LIRENZA_SCRIPTS");
    for (const char* name : kScripts) QVERIFY2(QFileInfo(window::ScriptPath(name)).isExecutable(), name);
  }

  void eachPlayerButtonStartsItsScriptInATerminal_data() {
    QTest::addColumn<int>("button");
    QTest::addColumn<QString>("script");
    QTest::addColumn<bool>("playing");
    QTest::newRow("play MIDI") << 1 << "PlayMidi.command" << false;
    QTest::newRow("MIDI to AIFF, during playback") << 2 << "MidiToAiff.command" << true;
    QTest::newRow("play AIFF") << 3 << "PlayAiff.command" << false;
  }
  void eachPlayerButtonStartsItsScriptInATerminal() {
    QFETCH(int, button);
    QFETCH(QString, script);
    QFETCH(bool, playing);
    window->State().modes.playing = playing;  // a script may start while the score plays
    const QImage atRest = Shown(button);
    Press(button);
    QVERIFY2(Shown(button) != atRest, "the button does not look pressed");
    // The script gets no arguments of its own; the wrapper keeps the window open after it.
    const QStringList expected = {bin + "/x-terminal-emulator", "-e", scripts + "/run-and-wait", scripts + "/" + script};
    QCOMPARE(launcher->started, QList<QStringList>{expected});
    Release(button);
    QCOMPARE(Shown(button), atRest);
    QVERIFY(dialogs->told.isEmpty());

    // Pressed again, another one starts; a score being read holds the buttons back.
    Press(button), Release(button);
    window->State().modes.loading = true;
    Press(button), Release(button);
    QCOMPARE(launcher->started.size(), 2);
  }

  void whatTheUserMustInstallIsToldInOneSentence_data() {
    QTest::addColumn<bool>("scriptMissing");
    QTest::addColumn<QString>("named");
    QTest::newRow("no terminal") << false << "xterm";
    QTest::newRow("no script") << true << "MidiToAiff.command";
  }
  void whatTheUserMustInstallIsToldInOneSentence() {
    QFETCH(bool, scriptMissing);
    QFETCH(QString, named);
    QFile::remove(scriptMissing ? scripts + "/MidiToAiff.command" : bin + "/x-terminal-emulator");
    const QImage atRest = Shown(2);
    Press(2);
    QVERIFY(launcher->started.isEmpty());
    QCOMPARE(dialogs->told.size(), 1);
    QVERIFY2(dialogs->told[0].contains(named) && dialogs->told[0].count("。") == 1, qPrintable(dialogs->told[0]));
    QCOMPARE(Shown(2), atRest);  // the message took the release
  }

  void theMidiButtonWritesOnlyAChangedScoreAndLeavesItChanged() {
    const QImage atRest = Shown(0);
    const QString viaButton = dir->filePath("button.mid"), viaMenu = dir->filePath("menu.mid");
    dialogs->answers << viaButton << viaMenu;
    // Unchanged: no dialog, no file, and the button never looks pressed.
    Press(0);
    QCOMPARE(Shown(0), atRest);
    Release(0);
    QVERIFY(dialogs->suggested.isEmpty());

    DoubleClickStaff({40, 58});
    TheStaff().hasChanges = true;
    Press(0), Release(0);
    QCOMPARE(Shown(0), atRest);
    QVERIFY2(TheStaff().hasChanges, "a MIDI file is no save of the score");
    // The very file the menu's MIDI save writes.
    QVERIFY(window->RunMenuCommand(window::MenuCommand::SaveMidi));
    const std::string written = testing::FileBytes(viaButton);
    QVERIFY(written.starts_with("MThd") && written == testing::FileBytes(viaMenu));
    QVERIFY(launcher->started.isEmpty() && dialogs->told.isEmpty());
  }

  void theVolumeSliderSetsTheSystemLevelAtEachStep() {
    auto* slider = Get<QSlider>(ControlId::VolumeSlider);
    // Up by single steps to the top, then at one go to silence.
    while (slider->value() < slider->maximum()) slider->triggerAction(QAbstractSlider::SliderSingleStepAdd);
    slider->triggerAction(QAbstractSlider::SliderToMinimum);
    QList<QStringList> expected;
    for (const char* level : {"5", "5", "6", "7", "0"}) expected << QStringList{scripts + "/SetVolume", level};
    QCOMPARE(launcher->started, expected);

    // A launcher that cannot start, or no script at all: the slider and its speaker go on
    // moving, and nobody is told.
    const QImage silent = Get<PictureCanvas>(ControlId::Speaker)->ShownPicture();
    launcher->starts = false;
    slider->setValue(9);
    QFile::remove(scripts + "/SetVolume");
    slider->setValue(4);
    QCOMPARE(launcher->started.size(), 6);
    QCOMPARE(slider->value(), 4);
    QVERIFY(Get<PictureCanvas>(ControlId::Speaker)->ShownPicture() != silent);
    QVERIFY(dialogs->told.isEmpty());
  }
};

QTEST_MAIN(ConversionTest)
#include "conversion_test.moc"
