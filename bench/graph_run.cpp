// What the graph costs while it records: `bench_graph_run DEVICE SECONDS` opens its window with
// twenty lines and all lanes at the one minute scale, polls the slave behind a serial device, and
// prints the share of a core that the program took. A run of its own: it takes as long as it is
// told. Settings go to $XDG_CONFIG_HOME.

#include <sys/resource.h>

#include <QApplication>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "measure.h"
#include "platform/port_devices.h"
#include "platform/qt/qt_platform.h"
#include "ui/graph_tool.h"

namespace {

constexpr int kLines = 20;
constexpr int kSpeed = 3;  // doublings of 1200: 9600 baud

double ProcessorSeconds() {
  rusage used{};
  getrusage(RUSAGE_SELF, &used);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
  };
  return seconds(used.ru_utime) + seconds(used.ru_stime);
}

void ShowLines(tarnlink::Graphic& data) {
  const auto show = [&](int index) {
    data.Attributes.at(static_cast<std::size_t>(index)).ShowLine = true;
    data.Attributes.at(static_cast<std::size_t>(index)).ShowCaption = true;
    data.AllocateChannel(index);
  };
  for (int index = 0; index < kLines; ++index) show(index);
  for (int lane = tarnlink::kStatusChannel; lane <= tarnlink::kLastAttribute; ++lane) show(lane);
}

long Samples(const tarnlink::Graphic& data) {
  long count = 0;
  for (const tarnlink::MeasureChannel& channel : data.Channels) count += channel.Count();
  return count;
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  if (argc != 3) {
    std::fprintf(stderr, "usage: bench_graph_run DEVICE SECONDS\n");
    return 2;
  }
  QApplication::setApplicationName("TarnLink2");
  QApplication::setOrganizationName("TarnLink2");
  tarnlink::QtPlatform platform;
  tarnlink::SaveDevicePath(1, argv[1], platform.settings());
  std::string mss_folder;
  std::string grp_folder;
  tarnlink::GraphTool tool(platform, {[] { return 1; }, [] { return kSpeed; }},
                           {mss_folder, grp_folder, {}, {}}, nullptr);
  tool.Show();
  const tarnlink::Graphic& data = tool.graph()->graph.Data;
  ShowLines(tool.graph()->graph.Data);
  tool.graph()->commands.mnuScale(0);
  const double used = ProcessorSeconds();
  const double began = bench::WallSeconds();
  QTimer::singleShot(std::atoi(argv[2]) * 1000, &application, &QApplication::quit);
  QApplication::exec();
  const double wall = bench::WallSeconds() - began;
  std::printf("%.0f s, %ld samples, %s\n", wall, Samples(data),
              tool.graph()->graph.lblCommunicationError.Visible ? "with an error" : "no error");
  constexpr double kBound = 0.05;
  bench::Report("share of a core while recording", (ProcessorSeconds() - used) / wall, kBound,
                false);
  return bench::AllHeld() ? 0 : 1;
}
