#include "window/about_box.h"

#include <QApplication>

#include "window/main_window.h"

namespace lirenza::window {

AboutBox::AboutBox(MainWindow& window) : QObject(&window), window_(window) {
  window_.OnMenu(MenuCommand::About, [this](int) { Open(); });
}

QString AboutBox::Text() {
  return QStringLiteral(
             "<h3>Lirenza %1</h3>"
             "<p>コンピュータのキーボードとマウスで弾くヴァイオリンと、五線譜の楽譜帳。"
             "楽譜の調に合わせた純正律で鳴ります。</p>"
             "<p>Lirenza は自由ソフトウェアです。GNU 一般公衆利用許諾書 バージョン 3 またはそれ以降"
             "（GPL-3.0-or-later）の下で、再配布や改変ができます。</p>"
             "<p>音と文字:</p>"
             "<ul>"
             "<li>FluidR3 音源（fluid-soundfont-gm, -gs）: MIT ライセンス, Frank Wen</li>"
             "<li>Emmentaler 音楽フォント（lilypond-fonts）: SIL Open Font License 1.1</li>"
             "<li>IPA フォント（IPAexゴシック, IPAゴシック）: IPA フォントライセンス v1.0</li>"
             "</ul>"
             "<p>ライブラリ: Qt 6（LGPL-3.0）, FluidSynth（LGPL-2.1-or-later）</p>")
      .arg(QStringLiteral(LIRENZA_VERSION));
}

void AboutBox::Open() {
  if (!box_) {
    box_ = new QMessageBox(&window_);
    box_->setWindowTitle(QStringLiteral("Lirenzaについて"));
    box_->setTextFormat(Qt::RichText);
    box_->setText(Text());
    box_->setIconPixmap(QApplication::windowIcon().pixmap(64, 64));
    box_->setStandardButtons(QMessageBox::Ok);
    box_->setWindowModality(Qt::WindowModal);
  }
  box_->open();
}

}  // namespace lirenza::window
