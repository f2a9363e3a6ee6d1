// lirenza-pictures: draws every picture of the window's surface into a folder, and
// lays them out for review.
//
//   lirenza-pictures --out DIR [--font EMMENTALER.otf]
//   lirenza-pictures --sheet OUT.png --from DIR      every picture with name and size
//   lirenza-pictures --preview OUT.png --from DIR    a melody on the staff at real scale
//   lirenza-pictures --icons DIR --name NAME [--font EMMENTALER.otf]
//                                                    the program's icon, as a hicolor theme
#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImageWriter>
#include <QStringList>
#include <QtConcurrent/QtConcurrentMap>
#include <cstdio>
#include <functional>
#include <map>
#include <mutex>

#include "painters.h"
#include "drawing.h"
#include "picture_list.h"
#include "review.h"

using namespace lirenza::pictures;

namespace {

int Fail(const QString& message) {
  std::fprintf(stderr, "lirenza-pictures: %s\n", qPrintable(message));
  return 1;
}

QString Option(const QStringList& args, const QString& name) {
  int i = args.indexOf(name);
  return i >= 0 && i + 1 < args.size() ? args[i + 1] : QString();
}

bool Save(const QImage& image, const QString& path) {
  QImageWriter writer(path, "png");
  writer.setCompression(1);  // fast: the big pictures are written in a few milliseconds
  return writer.write(image);
}

// Draws every family, the slow ones (the backs) spread over the cores, and writes the
// files. Returns false with a message on the first picture that is missing, of the
// wrong size or cannot be written.
int DrawAll(const QString& outDir, const QString& fontPath) {
  QElapsedTimer clock;
  clock.start();
  if (!QDir().mkpath(outDir)) return Fail(QStringLiteral("cannot make %1").arg(outDir));
  std::vector<std::function<void(PictureSet&, const MusicFont&)>> jobs = {
      [](PictureSet& s, const MusicFont& f) { DrawNotes(f, s); },
      [](PictureSet& s, const MusicFont& f) { DrawStaff(f, s); },
      [](PictureSet& s, const MusicFont& f) { DrawSignatures(f, s); },
      [](PictureSet& s, const MusicFont& f) { DrawButtons(f, s); },
      [](PictureSet& s, const MusicFont&) { DrawViolin(s); },
  };
  for (int i = 0; i < kBackCount; ++i)
    jobs.push_back([i](PictureSet& s, const MusicFont&) { DrawBack(i, s); });

  // Every picture twice: for a screen at 100 % and, as NAME@2x.png, at 200 %; a screen
  // at 150 % shows the second drawn smaller, never the first blown up.
  struct Job {
    std::function<void(PictureSet&, const MusicFont&)> draw;
    int scale;
  };
  std::vector<Job> scaledJobs;
  for (int scale : {1, 2})
    for (const auto& job : jobs) scaledJobs.push_back({job, scale});

  std::mutex lock;
  std::map<int, PictureSet> all;  // by scale: the size of each picture drawn
  QStringList errors;
  QtConcurrent::blockingMap(scaledJobs, [&](const Job& job) {
    // The raw font is not shared between threads: each job reads its own.
    MusicFont font;
    if (!font.Load(fontPath)) {
      std::lock_guard guard(lock);
      errors << font.Error();
      return;
    }
    SetPictureScale(job.scale);
    PictureSet mine;
    job.draw(mine, font);
    const QString suffix = job.scale == 1 ? QStringLiteral(".png") : QStringLiteral("@%1x.png").arg(job.scale);
    for (auto& [name, image] : mine)
      if (!Save(image, QDir(outDir).filePath(QString::fromStdString(name) + suffix))) {
        std::lock_guard guard(lock);
        errors << QStringLiteral("cannot write %1%2").arg(QString::fromStdString(name), suffix);
      }
    std::lock_guard guard(lock);
    for (auto& [name, image] : mine) all[job.scale][name] = QImage(image.size(), QImage::Format_Mono);
  });
  if (!errors.isEmpty()) return Fail(errors.join(QStringLiteral("; ")));
  for (const auto& [scale, drawn] : all) {
    for (const PictureSpec& spec : AllPictures()) {
      auto it = drawn.find(spec.name);
      if (it == drawn.end()) return Fail(QStringLiteral("%1.png was not drawn").arg(QString::fromStdString(spec.name)));
      if (it->second.width() != spec.size.width * scale || it->second.height() != spec.size.height * scale)
        return Fail(QStringLiteral("%1.png at scale %2 is %3 x %4, not %5 x %6")
                        .arg(QString::fromStdString(spec.name))
                        .arg(scale)
                        .arg(it->second.width()).arg(it->second.height())
                        .arg(spec.size.width * scale).arg(spec.size.height * scale));
    }
    if (drawn.size() != AllPictures().size()) return Fail(QStringLiteral("a picture outside the list was drawn"));
  }
  std::printf("lirenza-pictures: %zu pictures at scales 1 and 2 in %s, %lld ms\n", all[1].size(), qPrintable(outDir),
              static_cast<long long>(clock.elapsed()));
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  QGuiApplication app(argc, argv);
  QStringList args = app.arguments();
  QString from = Option(args, QStringLiteral("--from"));
  if (args.contains(QStringLiteral("--sheet"))) {
    QString error = MakeContactSheet(from, Option(args, QStringLiteral("--sheet")));
    return error.isEmpty() ? 0 : Fail(error);
  }
  if (args.contains(QStringLiteral("--preview"))) {
    QString error = MakeStaffPreview(from, Option(args, QStringLiteral("--preview")));
    return error.isEmpty() ? 0 : Fail(error);
  }
  QString out = Option(args, QStringLiteral("--out"));
  QString icons = Option(args, QStringLiteral("--icons"));
  QString iconName = Option(args, QStringLiteral("--name"));
  if (out.isEmpty() && (icons.isEmpty() || iconName.isEmpty()))
    return Fail(QStringLiteral("usage: lirenza-pictures --out DIR [--font FILE] | --icons DIR --name NAME [--font FILE] | --sheet OUT.png --from DIR | --preview OUT.png --from DIR"));
  QString font = Option(args, QStringLiteral("--font"));
  if (font.isEmpty()) font = FindEmmentaler();
  if (font.isEmpty()) return Fail(QStringLiteral("the Emmentaler font of lilypond-fonts is not installed"));
  if (!icons.isEmpty()) {
    MusicFont music;
    if (!music.Load(font)) return Fail(music.Error());
    QString error = DrawIcons(music, icons, iconName);
    return error.isEmpty() ? 0 : Fail(error);
  }
  return DrawAll(out, font);
}
