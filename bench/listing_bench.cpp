// Reading a long listing against counting its lines with wc, both from the page cache.

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QTemporaryDir>
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "files/nec_listing.h"
#include "measure.h"
#include "platform/qt/qt_files.h"

namespace {

constexpr std::size_t kListing = 50'000'000;  // bytes
constexpr int kSymbols = 4'000;
constexpr int kRepeats = 9;

std::string Digits(unsigned number, int width) {
  std::array<char, 16> text;
  std::snprintf(text.data(), text.size(), "%0*X", width, number);
  return text.data();
}

std::string SymbolLine(unsigned number) {
  std::string line = std::string(11, ' ') + "variable_" + std::to_string(number);
  line.resize(35, ' ');
  return line + Digits(number & 0xFFFF, 4) + "\r\n";
}

std::string CodeLine(unsigned number) {
  static const std::vector<std::string> kText = {"MOVW AX,#0123H",
                                                 "CALL !4567H",
                                                 "RET",
                                                 "MOV A,!0F012H     ; the present phase",
                                                 "INCW HL",
                                                 "BZ $89ABH         ; nothing to do",
                                                 "PUSH HL"};
  std::string line = std::to_string(number);
  line.insert(0, 7 - std::min<std::size_t>(line.size(), 7), ' ');
  return line + "  " + Digits(number & 0xFFFF, 4) + "  " + Digits(number * 2654435761U >> 8, 6) +
         "  " + kText[number % kText.size()] + "\r\n";
}

// Code, then all symbols at once; or nothing but symbols.
void WriteListing(const std::string& path, bool all_symbols) {
  std::string text = "Target CPU   NEC\r\nCODE\r\n";
  const std::size_t code_end = all_symbols ? 0 : kListing - std::size_t{kSymbols} * 41;
  for (unsigned i = 1; text.size() < code_end; ++i) text += CodeLine(i);
  text += "BITS\r\n           a_bit                   0061.3\r\nDATA\r\n";
  for (unsigned i = 1; text.size() < kListing; ++i) text += SymbolLine(i);
  std::ofstream(path, std::ios::binary) << text;
}

double CountSeconds(const std::string& path) {
  const double begun = bench::WallSeconds();
  const pid_t child = fork();
  if (child == 0) {
    const int nowhere = open("/dev/null", O_WRONLY);
    if (nowhere < 0 || dup2(nowhere, STDOUT_FILENO) < 0) _exit(1);
    execlp("wc", "wc", "-l", path.c_str(), static_cast<char*>(nullptr));
    _exit(1);
  }
  int status = 0;
  if (waitpid(child, &status, 0) != child || status != 0) {
    std::fprintf(stderr, "wc could not be run\n");
    std::exit(1);
  }
  return bench::WallSeconds() - begun;
}

double ReadSeconds(const std::string& path, std::size_t& symbols) {
  tarnlink::QtFiles files;
  const double begun = bench::WallSeconds();
  tarnlink::NecListingReader reader;
  files.ReadPieces(path, [&](std::string_view piece) {
    reader.Take(piece);
    return true;
  });
  const tarnlink::NecListing listing = reader.Finish();
  const double seconds = bench::WallSeconds() - begun;
  symbols = listing.bytes.size() + listing.bits.size();
  return seconds;
}

// The speed of the reader in that of wc, and what was measured on the way.
double Compare(const std::string& path, const char* what) {
  std::vector<double> counting;
  std::vector<double> reading;
  std::size_t symbols = 0;
  CountSeconds(path);
  for (int i = 0; i < kRepeats; ++i) {
    counting.push_back(CountSeconds(path));
    reading.push_back(ReadSeconds(path, symbols));
  }
  std::printf("%s: read in %.1f ms (%zu symbols), lines counted in %.1f ms\n", what,
              bench::Median(reading) * 1e3, symbols, bench::Median(counting) * 1e3);
  return bench::Median(counting) / bench::Median(reading);
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const QTemporaryDir folder;
  const std::string path = folder.path().toStdString() + "/listing.lst";
  WriteListing(path, true);
  const double all_symbols = Compare(path, "nothing but symbols");
  std::printf("nothing but symbols: speed of reading / wc -l %.3f, no bound\n", all_symbols);
  WriteListing(path, false);
  bench::Report("speed of reading a listing of 50 MB / wc -l", Compare(path, "mostly code"),
                1.0 / 3.0, true);
  return bench::AllHeld() ? 0 : 1;
}
