#pragma once
#include <string>
#include <vector>

namespace lirenza::cli {

using Argv = std::vector<std::string>;

int RunMidi(const Argv& args);
int RunTuning(const Argv& args);
int RunKestra(const Argv& args);
int RunScale(const Argv& args);
int RunInspect(const Argv& args);
int RunRender(const Argv& args);
int RunInstruments(const Argv& args);
int RunPdf(const Argv& args);

}  // namespace lirenza::cli
