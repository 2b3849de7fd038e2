// How fast the program polls a slave that answers at once, and what an exchange costs it, against a
// bare exchange loop on the same kind of line.

#include <QApplication>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "answering_slave.h"
#include "app/program.h"
#include "bare_exchange.h"
#include "files/screen_file.h"
#include "measure.h"

namespace {

constexpr int kTick = 20;        // ms
constexpr int kMeasured = 8000;  // ms
constexpr int kSettling = 500;   // ms

// Runs the event loop for a while and returns the processor time that this thread took.
double RunFor(int milliseconds) {
  const double before = bench::ThreadProcessorSeconds();
  QTimer::singleShot(milliseconds, QApplication::instance(), [] { QApplication::exit(); });
  QApplication::exec();
  return bench::ThreadProcessorSeconds() - before;
}

struct Bare {
  double answer_seconds;
  double processor_per_exchange;
};

Bare MeasureBare() {
  bench::AnsweringSlave slave;
  bench::BareExchange loop(slave.path(), kTick);
  RunFor(kSettling);
  const long first = loop.exchanges();
  const double waited = loop.waited();
  const double processor = RunFor(kMeasured);
  const double count = static_cast<double>(loop.exchanges() - first);
  return {(loop.waited() - waited) / count, processor / count};
}

std::string ScreenOf(int locations) {
  std::vector<tarnlink::ScreenRecord> records;
  for (int i = 0; i < locations; ++i) {
    tarnlink::LocationRecord record;
    record.location.Specification = 0;
    record.location.StorageType = tarnlink::kUnsignedByte;
    record.location.Address = "01A0";
    record.name_top = record.value_top = static_cast<float>(i % 32) * 360.0F;
    record.name_left = static_cast<float>(i / 32) * 4500.0F;
    record.value_left = record.name_left + 2160.0F;
    records.emplace_back(record);
  }
  return tarnlink::WriteScreenFile(0xE0E0E0, records);
}

void MeasureProgram(int locations, const Bare& bare, const bench::AnsweringSlave& slave,
                    const std::filesystem::path& folder) {
  std::ofstream(folder / "screen.wcr", std::ios::binary) << ScreenOf(locations);

  tarnlink::Program program;
  program.Start((folder / "screen.wcr").string());
  RunFor(kSettling);
  program.monitor().run.StartCommunication();
  RunFor(kSettling);
  const long first = slave.answered();
  const double begin = bench::WallSeconds();
  const double processor = RunFor(kMeasured);
  const double wall = bench::WallSeconds() - begin;
  const double count = static_cast<double>(slave.answered() - first);
  program.monitor().run.StopCommunication();

  const std::string of = ", " + std::to_string(locations) + " on the screen";
  const double limit = 1.0 / (bare.answer_seconds + kTick / 1000.0);
  std::printf("%.2f polls a second, limit %.2f; %.1f us a poll, bare %.1f us\n", count / wall,
              limit, processor / count * 1e6, bare.processor_per_exchange * 1e6);
  bench::Report("polls per second / (1 / (answer + tick))" + of, count / wall / limit, 0.95, true);
  bench::Report("processor time per exchange / bare loop" + of,
                processor / count / bare.processor_per_exchange, 2.0, false);
}

}  // namespace

int main(int argc, char** argv) {
  // One store for all programs of this process: its place is looked up once.
  QTemporaryDir folder;
  const std::filesystem::path root = folder.path().toStdString();
  bench::AnsweringSlave slave;
  std::filesystem::create_directories(root / "TarnLink2");
  std::ofstream(root / "TarnLink2" / "TarnLink2.ini")
      << "[Communication]\nProtocol=0\nBaudrate=3\nStopBits=0\nParity=0\n[Ports]\nCOM1="
      << slave.path() << "\n";
  qputenv("XDG_CONFIG_HOME", folder.path().toUtf8());
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  const Bare bare = MeasureBare();
  MeasureProgram(1, bare, slave, root);
  MeasureProgram(512, bare, slave, root);
  return bench::AllHeld() ? 0 : 1;
}
