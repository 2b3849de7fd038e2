// How fast the program polls a slave that answers at once, and what an exchange costs it, against a
// bare exchange loop on the same kind of line; and what ZOLT costs against TarnLink.

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
constexpr int kRounds = 7;       // of each side by turns, so that both meet the same machine
constexpr int kMeasured = 2000;  // ms a round
constexpr int kSettling = 200;   // ms

// Runs the event loop for a while and returns the processor time that this thread took.
double RunFor(int milliseconds) {
  const double before = bench::ThreadProcessorSeconds();
  QTimer::singleShot(milliseconds, QApplication::instance(), [] { QApplication::exit(); });
  QApplication::exec();
  return bench::ThreadProcessorSeconds() - before;
}

struct Round {
  double polls_per_second;
  double processor_per_exchange;
};

// One round of a side that runs already; `exchanges` counts what it has done so far.
template <class Count>
Round Measure(Count exchanges) {
  RunFor(kSettling);
  const long first = exchanges();
  const double begin = bench::WallSeconds();
  const double processor = RunFor(kMeasured);
  const double wall = bench::WallSeconds() - begin;
  const double count = static_cast<double>(exchanges() - first);
  return {count / wall, processor / count};
}

struct BareRound {
  Round round;
  double answer_seconds;
};

BareRound MeasureBare() {
  bench::AnsweringSlave slave;
  bench::BareExchange loop(slave.path(), kTick);
  const Round round = Measure([&loop] { return loop.exchanges(); });
  return {round, loop.waited() / static_cast<double>(loop.exchanges())};
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

void MeasureProgram(int locations, const bench::AnsweringSlave& slave,
                    const std::filesystem::path& folder) {
  std::ofstream(folder / "screen.wcr", std::ios::binary) << ScreenOf(locations);
  tarnlink::Program program;
  program.Start({(folder / "screen.wcr").string()});
  RunFor(kSettling);

  std::vector<double> speeds;
  std::vector<double> costs;
  for (int i = 0; i < kRounds; ++i) {
    const BareRound bare = MeasureBare();
    program.monitor().run.StartCommunication();
    const Round ours = Measure([&slave] { return slave.answered(); });
    program.monitor().run.StopCommunication();
    const double limit = 1.0 / (bare.answer_seconds + kTick / 1000.0);
    speeds.push_back(ours.polls_per_second / limit);
    costs.push_back(ours.processor_per_exchange / bare.round.processor_per_exchange);
    std::printf("%.2f polls a second, limit %.2f; %.1f us a poll, bare %.1f us\n",
                ours.polls_per_second, limit, ours.processor_per_exchange * 1e6,
                bare.round.processor_per_exchange * 1e6);
  }
  const std::string of = ", " + std::to_string(locations) + " on the screen";
  bench::Report("polls per second / (1 / (answer + tick))" + of, bench::Median(speeds), 0.95, true);
  bench::Report("processor time per exchange / bare loop" + of, bench::Median(costs), 2.0, false);
}

std::string ZoltScreen() {
  tarnlink::LocationRecord record;
  record.tag = tarnlink::kIdTag;
  record.location.Address = "01A0";
  record.location.Class = 1;
  return tarnlink::WriteScreenFile(0xE0E0E0, std::vector<tarnlink::ScreenRecord>{record});
}

// What an exchange costs the program, opened on this screen.
double CostOf(tarnlink::Program& program, const std::filesystem::path& screen,
              const bench::AnsweringSlave& slave) {
  program.monitor().screen.OpenTarnLinkFileBuildScreen(screen.string());
  program.monitor().run.StartCommunication();
  const Round round = Measure([&slave] { return slave.answered(); });
  program.monitor().run.StopCommunication();
  return round.processor_per_exchange;
}

void MeasureZolt(const bench::AnsweringSlave& slave, const std::filesystem::path& folder) {
  std::ofstream(folder / "tarnlink.wcr", std::ios::binary) << ScreenOf(1);
  std::ofstream(folder / "zolt.wcr", std::ios::binary) << ZoltScreen();
  tarnlink::Program program;
  program.Start({});
  RunFor(kSettling);
  std::vector<double> costs;
  for (int i = 0; i < kRounds; ++i) {
    const double tarnlink = CostOf(program, folder / "tarnlink.wcr", slave);
    const double zolt = CostOf(program, folder / "zolt.wcr", slave);
    costs.push_back(zolt / tarnlink);
    std::printf("ZOLT %.1f us a poll, TarnLink %.1f us\n", zolt * 1e6, tarnlink * 1e6);
  }
  bench::Report("processor time per exchange, ZOLT / TarnLink", bench::Median(costs), 1.05, false);
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
  MeasureProgram(1, slave, root);
  MeasureProgram(512, slave, root);
  MeasureZolt(slave, root);
  return bench::AllHeld() ? 0 : 1;
}
