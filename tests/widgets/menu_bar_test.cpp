// The menu bar of the real window: its texts and shortcuts, the rule that enables its
// items, shortcuts that reach the staff without taking editing keys from a text field,
// and the scale and bar commands carried out on the staff.
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QScrollBar>
#include <QSignalSpy>
#include <algorithm>

#include "tuning/scale_lines.h"
#include "window_fixture.h"

using namespace lirenza;
using layout::ControlId;
using window::MenuCommand;

namespace {

// The notes by time as "bar:token", bars counted from the start of the score. A rest's
// token is spelled again as it is painted, so it shows as "rest".
QStringList NotesByBar(const Staff& staff) {
  std::vector<Note> notes(staff.notes.begin() + 1, staff.notes.end());
  std::stable_sort(notes.begin(), notes.end(), [](const Note& a, const Note& b) { return a.left < b.left; });
  QStringList out;
  for (const Note& n : notes)
    out << QStringLiteral("%1:%2").arg((n.left + staff.scrollValue - kViewLeft) / kBarWidth)
               .arg(n.IsRest() ? QStringLiteral("rest") : QString::fromStdString(n.token));
  return out;
}

}  // namespace

class MenuBarTest : public testing::WindowTest {
  Q_OBJECT

  QMenuBar* Bar() { return window->findChild<QMenuBar*>(); }
  QAction* Item(const QString& text) {
    for (QAction* a : Bar()->findChildren<QAction*>())
      if (a->text() == text) return a;
    return nullptr;
  }
  QStringList Checked(const QString& menu) {
    QStringList out;
    for (QAction* a : Item(menu)->menu()->actions())
      if (a->isChecked()) out << a->text();
    return out;
  }
  void SelectBar(QPoint at) {
    clock->now += 1e6;  // a single click: it selects a bar and enters nothing
    QCOMPARE(View().NoteAt(at), 0);
    ClickStaff(at);
  }
  void Key(Qt::Key key, Qt::KeyboardModifiers mods) { QTest::keyClick(QApplication::focusWidget(), key, mods); }

 private slots:
  void init() {
    MakeWindow();
    View().setFocus();
  }

  void menusHaveTheirTitlesAndTheScalesTheirHeadings() {
    QStringList titles;
    for (QAction* title : Bar()->actions()) titles << title->text();
    QCOMPARE(titles, QStringList({"ファイル", "編集", "スケール", "ヘルプ"}));
    // A heading that cannot be chosen before each group of 9, 11 and 16 scales.
    const QList<QAction*> scales = Item("スケール")->menu()->actions();
    QCOMPARE(scales.size(), kScaleCount + 3);
    for (int row : {0, 10, 22}) QVERIFY(!scales[row]->isEnabled() && scales[row + 1]->isEnabled());
  }

  void itemsWaitForChanges() {
    window->OnMenu(MenuCommand::SaveScore, [](int) {});
    const QStringList waiting = {"楽譜を保存", "小節カット", "小節コピー", "小節ペースト", "小節クリアー"};
    const QStringList always = {"小節挿入", "全音符を2倍にする", "全音符を削除", "すべて選択", "ロクリアン", "環境設定",
                                "Lirenzaについて...", "用紙設定", "印刷", "Lirenzaヘルプ"};
    for (bool changed : {false, true}) {
      TheStaff().hasChanges = changed;
      QMenu* file = Item("ファイル")->menu();
      file->popup({0, 0});  // the rule runs as a menu opens
      for (const QString& text : waiting) QVERIFY2(Item(text)->isEnabled() == changed, qPrintable(text));
      for (const QString& text : always) QVERIFY2(Item(text)->isEnabled(), qPrintable(text));
      file->hide();
    }
    // The shortcuts follow the rule too, even when nothing told the menu bar of the change.
    window->RunMenuCommand(MenuCommand::Scale, 0);
    const int notes = TheStaff().NoteCount();
    TheStaff().hasChanges = false;
    Key(Qt::Key_X, Qt::AltModifier);
    QCOMPARE(TheStaff().NoteCount(), notes);
    TheStaff().hasChanges = true;
    Key(Qt::Key_X, Qt::AltModifier);
    QCOMPARE(TheStaff().NoteCount(), notes - 4);
  }

  void shortcutsReachTheStaffButLeaveTextKeysToTheField() {
    using enum MenuCommand;
    const std::tuple<const char*, const char*, MenuCommand, BarOperation> items[] = {
        {"楽譜を開く", "Ctrl+O", OpenScore, {}}, {"楽譜を保存", "Ctrl+S", SaveScore, {}}, {"Midiで保存", "Ctrl+M", SaveMidi, {}},
        {"取り消す", "Ctrl+Z", Undo, {}}, {"やり直す", "Ctrl+Shift+Z", Redo, {}}, {"カット", "Ctrl+X", Cut, {}},
        {"コピー", "Ctrl+C", Copy, {}}, {"ペースト", "Ctrl+V", Paste, {}}, {"すべて選択", "Ctrl+A", SelectAll, {}},
        {"小節カット", "Alt+X", BarCommand, BarOperation::Cut}, {"小節コピー", "Alt+C", BarCommand, BarOperation::Copy},
        {"小節ペースト", "Alt+V", BarCommand, BarOperation::Paste}, {"小節挿入", "Alt+I", BarCommand, BarOperation::Insert}};
    QList<std::pair<MenuCommand, int>> ran;
    for (auto [text, keys, command, operation] : items) window->OnMenu(command, [&ran, command](int i) { ran << std::pair(command, i); });
    TheStaff().hasChanges = true;  // the items that wait for changes take their keys too
    for (auto [text, keys, command, operation] : items) {
      QVERIFY2(Item(text) && Item(text)->shortcut() == QKeySequence(keys), text);
      ran.clear();
      QTest::keySequence(QApplication::focusWidget(), QKeySequence(keys));
      QCOMPARE(ran, (QList<std::pair<MenuCommand, int>>{{command, command == BarCommand ? int(operation) : 0}}));
    }
    MakeWindow();  // the menu's own handlers again, but for a copy that tells when it runs
    View().setFocus();
    bool copied = false;
    window->OnMenu(Copy, [&copied](int) { copied = true; });
    // Alt alone, as before a bar command, leaves the keys with the staff.
    Key(Qt::Key_Alt, Qt::NoModifier);
    QCOMPARE(QApplication::focusWidget(), &View());

    // In a text field the keys edit the text: the menu's copy never runs.
    Click(ControlId::ModeButton, 0);  // fields take text in edit mode
    auto* title = Get<QLineEdit>(ControlId::TitleField);
    title->setText("夕焼け小焼け");
    title->setFocus();
    Key(Qt::Key_A, Qt::ControlModifier);
    Key(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), "夕焼け小焼け");
    QVERIFY(!copied);
    // Chosen from the menu, select all works on the field that last had the focus.
    title->deselect();
    View().setFocus();
    Item("すべて選択")->trigger();
    QCOMPARE(title->selectedText(), "夕焼け小焼け");
  }

  void aBarCopiedPastedAndCutAcrossScrolls() {
    Item("メージャー(イオニアン)")->trigger();  // C D E F | G A B C5 | rest C5 B A | G F E D | C rest
    auto* scroll = Get<QScrollBar>(ControlId::StaffScrollBar);
    scroll->setValue(kBarWidth);
    SelectBar({60, 10});  // the first bar in view: the score's second
    Key(Qt::Key_C, Qt::AltModifier);
    scroll->setValue(2 * kBarWidth);
    SelectBar({kBarWidth + 60, 10});  // the score's fourth bar
    Key(Qt::Key_V, Qt::AltModifier);
    SelectBar({60, 10});  // the score's third bar
    // The low C is held down: Backspace or the release would act on it, until the cut
    // renumbers the notes under it.
    const Staff& staff = TheStaff();
    const auto lowC = std::find_if(staff.notes.begin() + 1, staff.notes.end(), [](const Note& n) { return n.token == "C492"; });
    const QPoint onLowC = window::StaffView::NoteRect(*lowC).center();
    clock->now += 1e6;
    QTest::mousePress(&View(), Qt::LeftButton, {}, onLowC);
    QCOMPARE(View().LastPressedNote(), int(lowC - staff.notes.begin()));
    Key(Qt::Key_X, Qt::AltModifier);
    Key(Qt::Key_Backspace, Qt::NoModifier);
    QTest::mouseRelease(&View(), Qt::LeftButton, {}, onLowC + QPoint(0, 20));
    QCOMPARE(NotesByBar(staff), QStringList({"0:C498", "0:D498", "0:E498", "0:F498", "1:G498", "1:A498", "1:B498",
                                             "1:C592", "2:G498", "2:A498", "2:B498", "2:C592", "3:C492", "3:rest"}));
    QCOMPARE(scroll->value(), 2 * kBarWidth);
  }

  void choicesMoveTheirCheckMarkOnlyWhenCarriedOut() {
    QSignalSpy changes(window.get(), &MainWindow::scoreChanged);  // an edit, as the undo walk shows: told once
    TheStaff().hasChanges = true;  // replaced without asking
    Item("メジャーペンタトニック(螢の光)")->trigger();
    QStringList tokens;
    for (int i = 1; i <= TheStaff().NoteCount(); ++i) tokens << QString::fromStdString(TheStaff().notes[i].token);
    QCOMPARE(tokens.join(' '), QString::fromUtf8(kScaleLines[9].line.data(), kScaleLines[9].line.size()));
    QCOMPARE(Get<QLineEdit>(ControlId::TitleField)->text(), "メジャーペンタトニック(螢の光)スケール");
    QCOMPARE(changes.count(), 1);
    QCOMPARE(Checked("スケール"), QStringList({"メジャーペンタトニック(螢の光)"}));
    // While the score plays the menu does nothing, not even move its mark.
    window->State().modes.playing = true;
    Item("ドリアン")->trigger();
    QCOMPARE(TheStaff().NoteCount(), tokens.size());
    QCOMPARE(Checked("スケール"), QStringList({"メジャーペンタトニック(螢の光)"}));

    // The body changes its picture under the violinist's name, which stays.
    const QString name = Get<QLabel>(ControlId::PlayerNameLabel)->text();
    Item("WhiteBody")->trigger();
    QCOMPARE(window->BackPicture(), 1);
    QCOMPARE(Get<QLabel>(ControlId::PlayerNameLabel)->text(), name);
    QCOMPARE(Checked("外観"), QStringList({"WhiteBody"}));
    QCOMPARE(window->BodyColour(), QColor(0xb3, 0xb3, 0xb3));

    // The keyboard marks show the layout the preferences hold; choosing one changes nothing.
    QCOMPARE(Checked("キーボード"), QStringList({"JISキーボード"}));
    window->SetKeyboardLayout(1);
    QCOMPARE(Checked("キーボード"), QStringList({"USキーボード"}));
    Item("JISキーボード")->trigger();
    QCOMPARE(window->KeyboardLayout(), 1);
    QCOMPARE(Checked("キーボード"), QStringList({"USキーボード"}));
  }
};

QTEST_MAIN(MenuBarTest)
#include "menu_bar_test.moc"
