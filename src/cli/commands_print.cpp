// The pdf subcommand: a score's printed sheets in a PDF file, without a display.
#include <QBuffer>
#include <QGuiApplication>
#include <QPdfWriter>
#include <cstdlib>
#include <iostream>
#include <memory>

#include "cli/cli_support.h"
#include "cli/commands.h"
#include "print/drawn_pictures.h"
#include "print/page_setup.h"
#include "print/score_sheets.h"
#include "print/stored_pictures.h"

namespace lirenza::cli {
namespace {

// Offscreen, the toolkit warns that it found no runtime folder, which it does not need
// for drawing a file: that warning would only alarm a script's user.
void QuietAboutRuntimeFolder(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  if (type == QtWarningMsg && message.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR"))) return;
  std::cerr << qFormatLogMessage(type, context, message).toStdString() << '\n';
}

// The toolkit draws the pages and their text; with no display it draws offscreen.
std::unique_ptr<QGuiApplication> StartPainting() {
  qInstallMessageHandler(QuietAboutRuntimeFolder);
  if (!std::getenv("DISPLAY") && !std::getenv("WAYLAND_DISPLAY") && !std::getenv("QT_QPA_PLATFORM"))
    qputenv("QT_QPA_PLATFORM", "offscreen");
  static int argc = 1;
  static char name[] = "lirenza-cli";
  static char* argv[] = {name, nullptr};
  return std::make_unique<QGuiApplication>(argc, argv);
}

QPageLayout PaperLayout(const Args& args) {
  QPageLayout layout = DefaultPageLayout();
  const std::string paper = args.Value("--paper").value_or("a4");
  if (paper == "letter")
    layout.setPageSize(QPageSize(QPageSize::Letter));
  else if (paper != "a4")
    throw UsageError("--paper must be a4 or letter, not '" + paper + "'");
  return layout;
}

}  // namespace

int RunPdf(const Argv& argv) {
  Args args(argv, {"-o", "-d", "--tempo", "--paper"}, {"--strict"});
  const QPageLayout layout = PaperLayout(args);
  const auto tempoOption = args.IntOption("--tempo", 0, 15);
  const auto app = StartPainting();
  PictureStore store(PictureStore::DefaultFolder());
  StoredPagePictures stored(store);
  QString fontError;
  const auto font = LoadMusicFont(&fontError);
  if (!font) std::cerr << "lirenza-cli pdf: " << fontError.toStdString() << "; the notes are printed from the window's pictures\n";
  std::unique_ptr<PagePictures> drawn;
  if (font) drawn = std::make_unique<DrawnPagePictures>(*font, stored);
  PagePictures& pictures = drawn ? *drawn : static_cast<PagePictures&>(stored);
  return ForEachScore(args, ".pdf", [&](const std::string& in, const std::string& out) {
    const ScoreFile file = ReadScore(in, args.Flag("--strict"));
    Staff staff;
    const int sliderFromFile = ApplyScoreFile(staff, file);
    const PrintedScore score = PrintedScoreOf(staff, tempoOption ? *tempoOption : sliderFromFile);

    QBuffer pdf;
    pdf.open(QIODevice::WriteOnly);
    {
      QPdfWriter writer(&pdf);
      writer.setPageLayout(layout);
      writer.setCreator(QStringLiteral("Lirenza"));
      writer.setTitle(score.title);
      if (!PrintSheets(writer, score, pictures)) throw RunError(in + ": the PDF pages could not be drawn");
    }
    if (!store.Problems().isEmpty())
      throw RunError(store.Problems().front().toStdString() + " (reinstall Lirenza, or set LIRENZA_PICTURES)");
    WriteOutput(out, pdf.data().toStdString());
    if (score.leftOut > 0)
      std::cerr << "lirenza-cli pdf: " << in << ": " << score.leftOut << " note(s) lie past the "
                << kMaxPrintSheets << "th sheet and were left out\n";
  });
}

}  // namespace lirenza::cli
