#pragma once
// The real main window on fake services, and the hands and eyes the widget tests use
// on it: clicks on controls and on the staff, menus answered by their items' own
// identifiers, and the ink a grab shows in a box.
#include <QAbstractButton>
#include <QApplication>
#include <QMenu>
#include <QPaintEvent>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>
#include <fstream>
#include <functional>
#include <memory>
#include <optional>

#include "files/file_io.h"
#include "violin/fakes.h"
#include "violin/fingerboard.h"
#include "window/control_factory.h"
#include "window/main_window.h"
#include "window/staff_view.h"

namespace lirenza::testing {

// The file dialogs answer the paths queued in answers, in turn (none left: cancelled),
// and keep the names they suggested and every sentence told.
struct FakeDialogs : window::Dialogs {
  QStringList answers, suggested, told;
  std::optional<QString> Next() { return answers.isEmpty() ? std::nullopt : std::optional(answers.takeFirst()); }
  std::optional<QString> OpenScorePath(QWidget*) override { return Next(); }
  std::optional<QString> SaveScorePath(QWidget*, const QString& name) override { return suggested << name, Next(); }
  std::optional<QString> SaveMidiPath(QWidget*, const QString& name) override { return suggested << name, Next(); }
  void Tell(QWidget*, const QString& sentence) override { told << sentence; }
};

// Starts nothing, so no test sets the computer's volume or opens a terminal: keeps each
// program with its arguments after it, and answers whether it "started".
struct FakeLauncher : window::ProcessLauncher {
  QList<QStringList> started;
  bool starts = true;
  bool Start(const QString& program, const QStringList& arguments) override {
    return started << (QStringList{program} + arguments), starts;
  }
};

struct FakeCloseQuestion : CloseQuestion {
  Answer answer = Answer::DontSave;
  int asked = 0;
  QStringList texts;  // message, explanation and the two captions last asked with
  Answer Ask(QWidget*, const QString& message, const QString& explanation, const QString& save,
             const QString& dontSave) override {
    return ++asked, texts = {message, explanation, save, dontSave}, answer;
  }
};

// The region a widget was painted over since painted was last emptied.
struct PaintedRegion : QObject {
  QRegion painted;
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) painted += static_cast<QPaintEvent*>(event)->region();
    return false;
  }
};

inline std::string FileBytes(const QString& path) { return ReadWholeFile(path.toStdString(), nullptr).value_or("(unread)"); }
inline void WriteBytes(const QString& path, const std::string& bytes) { std::ofstream(path.toStdString(), std::ios::binary) << bytes; }

// A rectangle of the fingerboard's geometry as the toolkit's.
inline QRect Box(const Rect& r) { return {r.x, r.y, r.width, r.height}; }

// The pixels of a that differ from b.
inline QRegion Differences(const QImage& a, const QImage& b) {
  QRegion changed;
  for (int y = 0; y < a.height(); ++y)
    for (int x = 0; x < a.width(); ++x)
      if (a.pixel(x, y) != b.pixel(x, y)) changed += QRect(x, y, 1, 1);
  return changed;
}

inline QImage Grab(QWidget* widget) { return widget->grab().toImage().convertToFormat(QImage::Format_RGB32); }

// Dark pixels in a box: notes and figures are ink, the sheet's lines are grey.
inline int Ink(const QImage& image, QRect box) {
  int n = 0;
  for (int y = box.top(); y <= box.bottom(); ++y)
    for (int x = box.left(); x <= box.right(); ++x) n += image.rect().contains(x, y) && qGray(image.pixel(x, y)) < 90;
  return n;
}

using ItemTest = std::function<bool(const QAction*)>;

// The first item of menu, its submenus' included, that wanted accepts, after the
// action of menu that holds it (itself when it is no submenu); nulls when none is.
inline std::pair<QAction*, QAction*> FindItem(const QMenu& menu, const ItemTest& wanted) {
  for (QAction* part : menu.actions())
    for (QAction* item : part->menu() ? part->menu()->actions() : QList<QAction*>{part})
      if (!item->isSeparator() && wanted(item)) return {part, item};
  return {nullptr, nullptr};
}

// Chooses, in the menu that open() pops up, the item wanted accepts with the keyboard,
// as a user could; with none, the menu closes unanswered. Whether an item was chosen.
inline bool ChooseFromMenu(const std::function<void()>& open, const ItemTest& wanted) {
  bool chosen = false, done = false;
  int waited = 0;
  QTimer poll;  // a menu run by exec only shows inside open(): answered from the timer
  QObject::connect(&poll, &QTimer::timeout, [&] {
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if ((!menu && ++waited < 200) || done) return;
    done = true;
    poll.stop();
    auto [part, item] = menu ? FindItem(*menu, wanted) : std::pair<QAction*, QAction*>();
    if (!item) return void(menu && menu->close());
    menu->setActiveAction(part);
    if (part != item) part->menu()->setActiveAction(item);
    QTest::keyClick(part != item ? part->menu() : menu, Qt::Key_Return);
    chosen = true;
  });
  poll.start(10);
  open();
  if (!QTest::qWaitFor([&] { return done; }, 3000)) qWarning("no menu came up");
  return chosen;
}

// A test's window, made anew for each test on fresh fakes and shown.
class WindowTest : public QObject {
 protected:
  std::unique_ptr<FakeSound> sound;
  std::shared_ptr<FakeClock> clock;
  std::shared_ptr<FakeConfirm> confirm;
  std::shared_ptr<FakeDialogs> dialogs;
  std::shared_ptr<FakeCloseQuestion> closeQuestion;
  std::shared_ptr<FakeLauncher> launcher;
  std::unique_ptr<MainWindow> window;

  // drawsOwnViolin: no fake fingerboard, so the window paints fingers on its violin canvas.
  void MakeWindow(bool drawsOwnViolin = false) {
    window.reset();  // it holds the old fakes
    // The window lists the score library of the data folder and fills it with the
    // installed scores: each test program gets an empty one of its own, never the
    // user's, unless the test chose its own scores.
    if (!qEnvironmentVariableIsSet("LIRENZA_SCORES")) {
      static QTemporaryDir dataHome;
      qputenv("XDG_DATA_HOME", QFile::encodeName(dataHome.path()));
      qputenv("LIRENZA_SCORES", QFile::encodeName(dataHome.filePath("no-scores")));
    }
    sound = std::make_unique<FakeSound>(), clock = std::make_shared<FakeClock>();
    confirm = std::make_shared<FakeConfirm>(), dialogs = std::make_shared<FakeDialogs>();
    closeQuestion = std::make_shared<FakeCloseQuestion>(), launcher = std::make_shared<FakeLauncher>();
    SoundPorts ports = sound->ports;
    if (drawsOwnViolin) ports.view = nullptr;
    window = std::make_unique<MainWindow>(
        window::WindowServices{ports, clock, confirm, dialogs, closeQuestion, launcher, {}});
    window->show();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
  }

  Staff& TheStaff() { return window->State().staff; }
  window::StaffView& View() { return window->Staff(); }
  template <typename Widget = QWidget>
  Widget* Get(layout::ControlId id, int index = 0) { return static_cast<Widget*>(window->Control(id, index)); }
  void Click(layout::ControlId id, int index = 0) { QTest::mouseClick(Get(id, index), Qt::LeftButton); }
  bool Checked(layout::ControlId id, int index) { return Get<QAbstractButton>(id, index)->isChecked(); }
  void ClickStaff(QPoint at, Qt::MouseButton button = Qt::LeftButton) { QTest::mouseClick(&View(), button, {}, at); }
  // Far in time from any earlier click, so the first click is no second one.
  void DoubleClickStaff(QPoint at) {
    clock->now += 1e6;
    ClickStaff(at), ClickStaff(at);
  }
  // A right click, far from any earlier click, answered with the item wanted accepts.
  bool ChooseOnStaff(QPoint at, const ItemTest& wanted) {
    clock->now += 1e6;
    return ChooseFromMenu([&] { ClickStaff(at, Qt::RightButton); }, wanted);
  }
  bool ChooseOnControl(layout::ControlId id, const ItemTest& wanted) {
    return ChooseFromMenu([&] { QTest::mousePress(Get(id), Qt::LeftButton); }, wanted);
  }
};

}  // namespace lirenza::testing
