// Printing from the window: the sheets composed from the score (checked on the picture
// they make), as many as the score needs, the page setup kept, and nothing changed by
// a cancelled dialog or asked for while the score plays.
#include <QPrinter>
#include <QTemporaryDir>

#include "print/page_setup.h"
#include "print/score_sheets.h"
#include "print/stored_pictures.h"
#include "window/print_panel.h"
#include "window_fixture.h"

using namespace lirenza;

namespace {

// Answers the dialogs as told; a print that goes ahead is written to a PDF file.
struct FakePrintDialogs : window::PrintDialogs {
  bool accept = true;
  QString pdf;
  QPageLayout chosenLayout;
  int asked = 0;
  bool SetUpPage(QWidget*, QPrinter& printer) override {
    ++asked;
    if (accept) printer.setPageLayout(chosenLayout);
    return accept;
  }
  bool ChoosePrinter(QWidget*, QPrinter& printer) override {
    ++asked;
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(pdf);
    return accept;
  }
};

int PdfPages(const QString& path) {
  const QByteArray bytes = QByteArray::fromStdString(testing::FileBytes(path));
  int pages = 0;
  for (qsizetype at = bytes.indexOf("/Type /Page"); at >= 0; at = bytes.indexOf("/Type /Page", at + 1))
    if (bytes.mid(at + 11, 1) != "s") ++pages;
  return pages;
}

// Ink: a pixel clearly darker than the paper.
int InkIn(const QImage& image, const QRect& box) {
  int ink = 0;
  for (int y = box.top(); y <= box.bottom(); ++y)
    for (int x = box.left(); x <= box.right(); ++x) ink += qGray(image.pixel(x, y)) < 128;
  return ink;
}

}  // namespace

class PrintTest : public testing::WindowTest {
  Q_OBJECT

  QTemporaryDir folder;
  FakePrintDialogs* dialogs = nullptr;

  void UseFakeDialogs() {
    auto fake = std::make_unique<FakePrintDialogs>();
    dialogs = fake.get();
    dialogs->pdf = folder.filePath(QStringLiteral("print.pdf"));
    window->findChild<window::PrintPanel*>()->SetDialogs(std::move(fake));
  }
  QImage Compose(int sheet = 0) {
    QImage page(kPrintSheetWidth, kPrintSheetHeight, QImage::Format_RGB32);
    page.fill(Qt::white);
    QPainter painter(&page);
    StoredPagePictures pictures(window->Pictures());
    PaintSheet(painter, PrintedScoreOf(TheStaff(), window->State().tempoSlider), sheet, pictures);
    return page;
  }
  // One crotchet C5 in each bar from the first, `bars` long.
  void FillBars(int bars) {
    LoadKestraLine(TheStaff(), "C594");
    const Note first = TheStaff().notes[1];
    for (int bar = 1; bar < bars; ++bar) {
      Note next = first;
      next.left += bar * kBarWidth;
      TheStaff().AddNote(next);
    }
  }

 private slots:
  void init() {
    MakeWindow();
    UseFakeDialogs();
    QFile::remove(dialogs->pdf);
  }

  void aSheetHoldsTheHeadingAndTheNotesAtTheirPlaces() {
    const QImage sheet = window->Pictures().Picture(QStringLiteral("PSheet")).convertToFormat(QImage::Format_RGB32);
    // An empty score: the sheet, its title and signatures, and no note on any line.
    SetTitle(TheStaff(), "空の楽譜");
    const QImage empty = Compose();
    QVERIFY(InkIn(empty, QRect(135, 13, 80, 16)) > 20);   // the title
    QVERIFY(InkIn(empty, QRect(15, 48, 60, 16)) > 20);    // the tempo word
    const QRect staves(100, 40, 700, 1160);               // right of the signatures
    QCOMPARE(empty.copy(staves), sheet.copy(staves));

    // A note at the start of the score, and one at the start of the second line.
    LoadKestraLine(TheStaff(), "C594");
    Note second = TheStaff().notes[1];
    second.left += kPrintLineWidth;
    TheStaff().AddNote(second);
    const Note& first = TheStaff().notes[1];
    const QImage page = Compose();
    const PaperPlace one = PlaceOnPaper(first.left, first.top), two = PlaceOnPaper(second.left, second.top);
    QCOMPARE(one, (PaperPlace{0, first.left - kTemplateLeft + kPrintLineLeft, first.top - kPrintNoteRise}));
    QCOMPARE(two, (PaperPlace{0, one.x, one.y + kPrintLineStep}));
    for (const PaperPlace& at : {one, two}) {
      const QRect head(at.x + 4, at.y + 15, 9, 8);
      QVERIFY2(InkIn(page, head) > InkIn(sheet, head) + 30, "no note head where the note belongs");
    }
    // No velocity digit on paper: nothing blue.
    for (int y = 0; y < page.height(); ++y)
      for (int x = 0; x < page.width(); ++x) {
        const QRgb c = page.pixel(x, y);
        QVERIFY(!(qBlue(c) > 150 && qRed(c) < 100 && qGreen(c) < 100));
      }
  }

  void aLongScoreGoesOnAsManySheetsAsItNeeds_data() {
    QTest::addColumn<int>("bars");
    QTest::addColumn<int>("sheets");
    QTest::newRow("30 bars") << 30 << 1;
    QTest::newRow("50 bars, one sheet full") << 50 << 1;
    QTest::newRow("51 bars") << 51 << 2;
    QTest::newRow("300 bars") << 300 << 6;
  }
  void aLongScoreGoesOnAsManySheetsAsItNeeds() {
    QFETCH(int, bars);
    QFETCH(int, sheets);
    FillBars(bars);
    QVERIFY(window->RunMenuCommand(window::MenuCommand::Print));
    QCOMPARE(PdfPages(dialogs->pdf), sheets);
    // Drawn at the printer's resolution: shapes and text, no screen picture.
    QVERIFY(!QByteArray::fromStdString(testing::FileBytes(dialogs->pdf)).contains("/Subtype /Image"));
    // The last bar's note is on the last sheet's last used line.
    const QImage last = Compose(sheets - 1);
    const PaperPlace end = PlaceOnPaper(TheStaff().notes[bars].left, TheStaff().notes[bars].top);
    QCOMPARE(end.sheet, sheets - 1);
    QVERIFY(InkIn(last, QRect(end.x + 4, end.y + 15, 9, 8)) > 30);
  }

  void cancelledOrBusyPrintingChangesNothing() {
    FillBars(12);
    ScrollTo(TheStaff(), 3 * kBarWidth);
    window->SetPrinterSetup(PageSetupText(DefaultPageLayout()));
    const std::string setup = window->PrinterSetup();
    dialogs->accept = false;
    window->RunMenuCommand(window::MenuCommand::Print);
    window->RunMenuCommand(window::MenuCommand::PageSetup);
    QCOMPARE(dialogs->asked, 2);
    QVERIFY(!QFile::exists(dialogs->pdf));
    QCOMPARE(TheStaff().scrollValue, 3 * kBarWidth);
    QVERIFY(window->PrinterSetup() == setup);

    dialogs->accept = true;
    window->State().modes.playing = true;
    window->RunMenuCommand(window::MenuCommand::Print);
    QCOMPARE(dialogs->asked, 2);  // not even asked
    QVERIFY(!QFile::exists(dialogs->pdf));
  }

  void thePageSetupChosenIsKeptAndUsed() {
    dialogs->chosenLayout = QPageLayout(QPageSize(QPageSize::Letter), QPageLayout::Landscape, QMarginsF(5, 6, 7, 8),
                                        QPageLayout::Millimeter);
    window->RunMenuCommand(window::MenuCommand::PageSetup);
    const QPageLayout kept = PageLayoutFromText(window->PrinterSetup());
    QCOMPARE(kept.pageSize().id(), QPageSize::Letter);
    QCOMPARE(kept.orientation(), QPageLayout::Landscape);
    QCOMPARE(kept.margins(QPageLayout::Millimeter), QMarginsF(5, 6, 7, 8));
    // Damaged or foreign text falls back field by field.
    const QPageLayout read = PageLayoutFromText("page=Nonsense;orientation=landscape;margins=1,2,x,4");
    QCOMPARE(read.pageSize().id(), QPageSize::A4);
    QCOMPARE(read.orientation(), QPageLayout::Landscape);
    QCOMPARE(read.margins(QPageLayout::Millimeter), DefaultPageLayout().margins(QPageLayout::Millimeter));
  }
};

QTEST_MAIN(PrintTest)
#include "print_test.moc"
