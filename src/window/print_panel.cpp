#include "window/print_panel.h"

#include <QPageSetupDialog>
#include <QPrintDialog>
#include <QPrinter>

#include "print/drawn_pictures.h"
#include "print/page_setup.h"
#include "print/score_sheets.h"
#include "print/stored_pictures.h"
#include "window/main_window.h"

namespace lirenza::window {
namespace {

const QString kPrintFailed = QStringLiteral("印刷できませんでした。プリンターの設定を確かめてください。");

class ToolkitPrintDialogs : public PrintDialogs {
 public:
  bool SetUpPage(QWidget* parent, QPrinter& printer) override {
    return QPageSetupDialog(&printer, parent).exec() == QDialog::Accepted;
  }
  bool ChoosePrinter(QWidget* parent, QPrinter& printer) override {
    return QPrintDialog(&printer, parent).exec() == QDialog::Accepted;
  }
};

}  // namespace

PrintPanel::PrintPanel(MainWindow& window)
    : QObject(&window), window_(window), dialogs_(std::make_unique<ToolkitPrintDialogs>()) {
  window_.OnMenu(MenuCommand::PageSetup, [this](int) { SetUpPage(); });
  window_.OnMenu(MenuCommand::Print, [this](int) { Print(); });
}

PrintPanel::~PrintPanel() = default;

void PrintPanel::SetDialogs(std::unique_ptr<PrintDialogs> dialogs) { dialogs_ = std::move(dialogs); }

void PrintPanel::SetUpPage() {
  QPrinter printer(QPrinter::HighResolution);
  printer.setPageLayout(PageLayoutFromText(window_.PrinterSetup()));
  if (dialogs_->SetUpPage(&window_, printer)) window_.SetPrinterSetup(PageSetupText(printer.pageLayout()));
}

void PrintPanel::Print() {
  const WindowState& state = window_.State();
  if (state.modes.Busy()) return;
  // Composed before the dialog, from the whole score wherever the staff is scrolled,
  // so a cancelled print leaves everything as it was.
  const PrintedScore score = PrintedScoreOf(state.staff, state.tempoSlider);
  QPrinter printer(QPrinter::HighResolution);
  printer.setPageLayout(PageLayoutFromText(window_.PrinterSetup()));
  printer.setDocName(score.title);
  printer.setFromTo(1, score.sheets);
  if (!dialogs_->ChoosePrinter(&window_, printer)) return;
  // The music font is read only when something prints; without it the window's
  // pictures print instead.
  StoredPagePictures stored(window_.Pictures());
  const auto font = LoadMusicFont(nullptr);
  std::unique_ptr<PagePictures> drawn;
  if (font) drawn = std::make_unique<DrawnPagePictures>(*font, stored);
  PagePictures& pictures = drawn ? *drawn : static_cast<PagePictures&>(stored);
  if (!PrintSheets(printer, score, pictures)) window_.Services().dialogs->Tell(&window_, kPrintFailed);
}

}  // namespace lirenza::window
