#pragma once
// Runs lirenza-cli (the program LIRENZA_CLI names) as a script would: arguments quoted
// for the shell, standard input empty, standard output and error captured apart, in a
// fresh folder that each test gets to itself.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace lirenza::test {

namespace fs = std::filesystem;

struct CliResult { int exit = -1; std::string out, err; };

inline std::string Slurp(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

inline std::string ShellQuote(const std::string& s) {
  std::string q = "'";
  for (char c : s) q += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return q + "'";
}

inline int Lines(const std::string& s) { return static_cast<int>(std::count(s.begin(), s.end(), '\n')); }
inline bool OneLine(const std::string& s) { return !s.empty() && s.find('\n') == s.size() - 1; }

class CliTest : public ::testing::Test {
 protected:
  void SetUp() override {
    const char* cli = std::getenv("LIRENZA_CLI");
    if (!cli) GTEST_SKIP() << "LIRENZA_CLI is not set";
    cli_ = cli;
    char work[] = "/tmp/lirenza-cli-XXXXXX", io[] = "/tmp/lirenza-cli-io-XXXXXX";
    ASSERT_TRUE(::mkdtemp(work) && ::mkdtemp(io));
    dir = work;
    io_ = io;
  }
  void TearDown() override {
    std::error_code ec;
    if (!dir.empty()) fs::remove_all(dir, ec), fs::remove_all(io_, ec);
  }

  fs::path P(const std::string& name) const { return dir / name; }
  std::string S(const std::string& name) const { return P(name).string(); }
  void Write(const std::string& name, const std::string& bytes) const { std::ofstream(P(name), std::ios::binary) << bytes; }
  // Names in the test's folder, hidden ones too, for what a failed run left behind.
  std::vector<std::string> Entries() const {
    std::vector<std::string> names;
    for (const auto& e : fs::directory_iterator(dir)) names.push_back(e.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }

  // env: "NAME=value" settings for this run only. program: another tool than lirenza-cli.
  CliResult Run(const std::vector<std::string>& args, const std::vector<std::string>& env = {},
                const std::string& program = "") const {
    std::string cmd;
    for (const auto& e : env) cmd += e.substr(0, e.find('=') + 1) + ShellQuote(e.substr(e.find('=') + 1)) + " ";
    cmd += program.empty() ? ShellQuote(cli_) : program;
    for (const auto& a : args) cmd += " " + ShellQuote(a);
    const fs::path out = io_ / "out", err = io_ / "err";
    cmd += " >" + ShellQuote(out.string()) + " 2>" + ShellQuote(err.string()) + " </dev/null";
    const int status = std::system(cmd.c_str());
    CliResult r{WIFEXITED(status) ? WEXITSTATUS(status) : -1, Slurp(out), Slurp(err)};
    fs::remove(out), fs::remove(err);
    return r;
  }

  fs::path dir;

 private:
  std::string cli_;
  fs::path io_;
};

}  // namespace lirenza::test
