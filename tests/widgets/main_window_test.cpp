// The main window's frame against its layout table and its rules: a control at the
// wrong place or hidden at the wrong time, a caption cut off by our wider fonts, or a
// close that loses changes without asking would all show on screen.
#include <QLabel>
#include <QLineEdit>

#include "picture_list.h"
#include "window_fixture.h"

using namespace lirenza;
using layout::Control;
using layout::ControlId;
using layout::Visibility;

namespace {

QString Name(const Control& c) { return QStringLiteral("%1(%2)").arg(ToQString(layout::IdName(c.ref.id))).arg(c.ref.index); }

// Marked so by its own row or by one of its parents' rows.
bool Marked(const Control& c, Visibility visibility) {
  for (const Control* row = &c;; row = &layout::ControlAt(row->parent)) {
    if (row->visibility == visibility) return true;
    if (row->parent == ControlId::Window) return false;
  }
}

void SendMouse(QWidget* w, QEvent::Type type, QPoint local, Qt::MouseButtons held) {
  QMouseEvent event(type, local, w->mapToGlobal(local), Qt::LeftButton, held, Qt::NoModifier);
  QApplication::sendEvent(w, &event);
}

}  // namespace

class MainWindowTest : public testing::WindowTest {
  Q_OBJECT

 private slots:
  void init() { MakeWindow(); }

  void everyControlStandsAtItsPlaceUnderItsParent() {
    MainWindow& window = *this->window;
    QCOMPARE(window.size(), QSize(layout::kWindowWidth, layout::kWindowHeight));
    QCOMPARE(window.minimumSize(), window.maximumSize());  // it cannot be resized
    QVERIFY(window.windowFlags() & Qt::FramelessWindowHint);
    for (const Control& c : layout::AllControls()) {
      QWidget* w = window.Control(c.ref.id, c.ref.index);
      QVERIFY2(w, qPrintable(Name(c)));
      const QWidget* parent = c.parent == ControlId::Window ? &window : window.Control(c.parent);
      QVERIFY2(w->parentWidget() == parent, qPrintable(Name(c)));
      QCOMPARE(QRect(w->mapTo(&window, QPoint(0, 0)), w->size()),
               QRect(c.place.left, c.place.top, c.place.width, c.place.height));
      QCOMPARE(w->toolTip(), ToQString(c.tooltip));
      if (auto* button = qobject_cast<QAbstractButton*>(w); button && button->isCheckable())
        QCOMPARE(button->isChecked(), c.startValue != 0);
    }
  }

  void startPauseRevealsExactlyTheMarkedControls() {
    MainWindow& window = *this->window;
    auto check = [&](bool pauseOver) {
      for (const Control& c : layout::AllControls()) {
        const bool shown = !Marked(c, Visibility::Hidden) && (pauseOver || !Marked(c, Visibility::AfterStartPause));
        QVERIFY2(window.Control(c.ref.id, c.ref.index)->isVisible() == shown,
                 qPrintable(Name(c) + (pauseOver ? " after" : " before") + " the pause"));
      }
      // The title field holds its caption as text only once the pause is over.
      const auto* title = static_cast<QLineEdit*>(window.Control(ControlId::TitleField));
      QCOMPARE(title->text(), pauseOver ? ToQString(layout::ControlAt(ControlId::TitleField).caption) : QString());
    };
    check(false);
    QTest::qWait(MainWindow::kStartPauseMs - 300);
    QVERIFY(!window.StartPauseOver());
    check(false);
    QTRY_VERIFY_WITH_TIMEOUT(window.StartPauseOver(), 2000);
    check(true);
  }

  void noCaptionIsWiderThanItsLabelAndNoneShrinksWithoutNeed() {
    for (const Control& c : layout::AllControls()) {
      auto* label = qobject_cast<QLabel*>(Get(c.ref.id, c.ref.index));
      if (!label || c.caption.empty()) continue;
      const QString text = ToQString(c.caption);
      QVERIFY2(QFontMetrics(label->font()).horizontalAdvance(text) <= c.place.width, qPrintable(Name(c)));
      const int size = label->font().pixelSize();
      QVERIFY2(size <= c.font.points, qPrintable(Name(c)));
      if (size < c.font.points) {
        QFont bigger = label->font();
        bigger.setPixelSize(size + 1);
        QVERIFY2(QFontMetrics(bigger).horizontalAdvance(text) > c.place.width, qPrintable(Name(c) + " shrank too far"));
      }
    }
  }

  void closeAsksOnlyOverUnsavedChanges_data() {
    QTest::addColumn<bool>("unsaved");
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("asked");
    QTest::addColumn<bool>("saved");
    QTest::addColumn<bool>("closed");
    using A = CloseQuestion::Answer;
    QTest::newRow("nothing to lose") << false << int(A::Cancel) << false << false << true;
    QTest::newRow("save") << true << int(A::Save) << true << true << true;
    QTest::newRow("don't save") << true << int(A::DontSave) << true << false << true;
    QTest::newRow("cancel keeps the window") << true << int(A::Cancel) << true << false << false;
  }

  void closeAsksOnlyOverUnsavedChanges() {
    QFETCH(bool, unsaved);
    QFETCH(int, answer);
    closeQuestion->answer = CloseQuestion::Answer(answer);
    int saves = 0;
    window->SetSaveAction([&] { return ++saves > 0; });
    TheStaff().hasChanges = unsaved;
    Click(ControlId::WindowButton, 0);  // the drawn close button, as the user closes it
    QTEST(closeQuestion->asked == 1, "asked");
    QTEST(saves == 1, "saved");
    QTEST(!window->isVisible(), "closed");
    if (closeQuestion->asked)
      QCOMPARE(closeQuestion->texts, QStringList({QStringLiteral("アプリを閉じる前に、変更した楽譜を保存しますか？"),
                                             QStringLiteral("保存しない場合は、変更した部分は破棄されます。 "),
                                             QStringLiteral("保存"), QStringLiteral("保存しない")}));
  }

  // A slow second press leaves the window; a quick one minimises it.
  void bodyDragsTheWindowAndAQuickSecondPressMinimisesIt() {
    MainWindow& window = *this->window;
    window.move(40, 30);
    const QPoint start = window.pos();
    SendMouse(&window, QEvent::MouseButtonPress, {600, 740}, Qt::LeftButton);
    SendMouse(&window, QEvent::MouseMove, {625, 730}, Qt::LeftButton);
    SendMouse(&window, QEvent::MouseButtonRelease, {625, 730}, Qt::NoButton);
    QCOMPARE(window.pos(), start + QPoint(25, -10));
    QTest::qWait(MainWindow::kDoublePressMs + 50);
    SendMouse(&window, QEvent::MouseButtonPress, {625, 730}, Qt::LeftButton);
    SendMouse(&window, QEvent::MouseButtonRelease, {625, 730}, Qt::NoButton);
    QVERIFY(!window.isMinimized());
    SendMouse(&window, QEvent::MouseButtonPress, {625, 730}, Qt::LeftButton);
    QTRY_VERIFY(window.isMinimized());
  }

  void backButtonStepsThroughTheTwelvePictures() {
    MainWindow& window = *this->window;
    auto* name = Get<QLabel>(ControlId::PlayerNameLabel);
    QCOMPARE(name->text(), ToQString(pictures::kPortraitNames[0]));
    window.SetBackPicture(MainWindow::kBackPictureCount - 1);
    QTest::mouseClick(window.Control(ControlId::BackPictureButton), Qt::LeftButton);
    QCOMPARE(window.BackPicture(), 0);
    window.SetBackPicture(MainWindow::kBackPictureCount);  // out of range: kept, but picture 8 shows
    QCOMPARE(window.BackPicture(), MainWindow::kBackPictureCount);
    QCOMPARE(name->text(), ToQString(pictures::kPortraitNames[8]));
  }
};

QTEST_MAIN(MainWindowTest)
#include "main_window_test.moc"
