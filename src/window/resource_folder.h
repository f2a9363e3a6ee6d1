#pragma once
// Where a folder of the program's own files lies (its pictures, scripts, scores, help):
// the one an environment variable names, else the build tree's, else share/lirenza/NAME
// beside the installed program, else the install prefix's. The first two and the third
// count only when `holds` says the folder has what it should.
#include <QString>
#include <functional>

namespace lirenza {

struct ResourcePlaces {
  const char* environmentVariable;
  QString buildFolder;      // empty when there is none
  QString installedName;    // "pictures": share/lirenza/pictures beside the program
  QString installedFolder;  // the install prefix's, taken without looking
};

QString FindResourceFolder(const ResourcePlaces& places, const std::function<bool(const QString&)>& holds);

}  // namespace lirenza
