// The files of the graph when they are full: 101 channels of 89,999 samples. Saving and exporting
// against writing the same bytes and against the C library's formatting, loading against reading
// the bytes alone and against other programs that make something of them; the memory of a load.
// Needs 1 GB in $TMPDIR.

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "graph/auto_save.h"
#include "graph/measure_export.h"
#include "graph/measure_file_writer.h"
#include "graph/measure_files.h"
#include "measure.h"
#include "platform/qt/background_writer.h"
#include "platform/qt/qt_platform.h"

namespace {

using tarnlink::Graphic;
using tarnlink::MeasureChannel;
using tarnlink::PieceSource;

constexpr int kSamples = MeasureChannel::kUpperBound + 1;
constexpr int kSaved = MeasureChannel::kUpperBound - 1;
constexpr int kValues = 10'000;
constexpr int kRepeats = 7;
constexpr int kTick = 1;                                  // ms
constexpr std::int64_t kUnixDayZero = 25'569LL * 86'400;  // 1970-01-01 in seconds since day 0

[[noreturn]] void GiveUp(const char* what) {
  std::perror(what);
  std::exit(1);
}

void Fill(Graphic& data) {
  tarnlink::LineColors colours;
  data.Attributes = tarnlink::LoadDefaultAttributes(colours);
  const std::int64_t begin = tarnlink::ToSeconds(tarnlink::ToDate({2024, 3, 5, 14, 7, 9}));
  std::mt19937 random(8);
  for (int i = 0; i <= data.LastChannel(); ++i) {
    data.Attributes[static_cast<std::size_t>(i)].StoredAs = tarnlink::kStoredBoth;
    MeasureChannel& channel = data.Channels[static_cast<std::size_t>(i)];
    channel.Dimension(MeasureChannel::kUpperBound);
    for (int second = 0; second < kSamples; ++second) {
      channel.Append({static_cast<std::int32_t>(random() % kValues), begin + second});
    }
  }
  data.FirstTime = tarnlink::FromSeconds(begin);
  data.LastTime = tarnlink::FromSeconds(begin + kSamples - 1);
}

// The graph's files on the real platform, with its event loop.
class Files {
 public:
  explicit Files(tarnlink::Platform& platform) : graph(platform) {}

  tarnlink::frmGraphic graph;
  double longest_gap = 0;  // seconds between two ticks

  double Seconds(
      const std::function<void(tarnlink::MeasureFiles&, const std::function<void()>&)>& call) {
    QEventLoop loop;
    // What the longest step keeps waiting.
    QTimer ticks;
    double last_tick = bench::WallSeconds();
    QObject::connect(&ticks, &QTimer::timeout, &ticks, [&] {
      const double now = bench::WallSeconds();
      longest_gap = std::max(longest_gap, now - last_tick);
      last_tick = now;
    });
    ticks.setTimerType(Qt::PreciseTimer);
    ticks.start(kTick);
    bool done = false;
    const double begun = bench::WallSeconds();
    call(files_, [&] {
      done = true;
      loop.quit();
    });
    if (!done) loop.exec();
    return bench::WallSeconds() - begun;
  }
  double Save(const std::string& path) {
    return Seconds(
        [&](auto& files, const auto& then) { files.SaveMeasureFile(path, true, false, then); });
  }
  double Load(const std::string& path) {
    return Seconds([&](auto& files, const auto& then) { files.LoadMeasureFile(path, true, then); });
  }
  double Export(const std::string& path) {
    return Seconds([&](auto& files, const auto& then) { files.ExportMeasureFile(path, then); });
  }

 private:
  tarnlink::frmContextMenu menu_{graph};
  tarnlink::AutoSave auto_save_{graph, menu_};
  tarnlink::MeasureFiles files_{graph, menu_, auto_save_};
};

std::string Bytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

enum class Sync { kNo, kYes };

class PlainFile {
 public:
  explicit PlainFile(const std::string& path) : path_(path) {
    std::remove(path.c_str());
    handle_ = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    if (handle_ < 0) GiveUp(path.c_str());
  }
  ~PlainFile() {
    close(handle_);
    std::remove(path_.c_str());
  }
  PlainFile(const PlainFile&) = delete;
  PlainFile& operator=(const PlainFile&) = delete;
  void Write(std::string_view bytes) const {
    while (!bytes.empty()) {
      const ssize_t done = write(handle_, bytes.data(), bytes.size());
      if (done < 0) GiveUp("write");
      bytes.remove_prefix(static_cast<std::size_t>(done));
    }
  }
  void SyncAll() const {
    if (fsync(handle_) != 0) GiveUp("fsync");
  }

 private:
  std::string path_;
  int handle_;
};

double WriteSeconds(const std::string& path, std::string_view bytes, Sync sync) {
  const PlainFile file(path);
  const double begun = bench::WallSeconds();
  for (std::size_t at = 0; at < bytes.size(); at += PieceSource::kPiece) {
    file.Write(bytes.substr(at, PieceSource::kPiece));
  }
  if (sync == Sync::kYes) file.SyncAll();
  return bench::WallSeconds() - begun;
}

// The text made and written piece by piece, on one thread.
double SourceSeconds(const std::string& path, PieceSource& source) {
  const PlainFile file(path);
  const double begun = bench::WallSeconds();
  for (std::string piece; source.Next(piece);) file.Write(piece);
  return bench::WallSeconds() - begun;
}

// A file that is not synced, for a comparison with one that is not either.
class PlainSink final : public tarnlink::FileSink {
 public:
  explicit PlainSink(const std::string& path) : file_(path) {}
  void Write(std::string_view bytes) override { file_.Write(bytes); }
  void Sync() override {}
  void Replace() override {}

 private:
  PlainFile file_;
};

// The same with the job and the thread of the program.
double JobSeconds(const std::string& path, std::unique_ptr<PieceSource> source) {
  tarnlink::LeftThreads left;
  const auto make = [&path] { return std::make_unique<PlainSink>(path); };
  const double begun = bench::WallSeconds();
  tarnlink::WriteJob job({}, std::move(source),
                         std::make_unique<tarnlink::BackgroundWriter>(path, make, left));
  while (job.Step()) job.Wait();
  return bench::WallSeconds() - begun;
}

double PrintSamplesSeconds(const std::string& path, const Graphic& data) {
  const double begun = bench::WallSeconds();
  std::FILE* file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) GiveUp(path.c_str());
  for (const MeasureChannel& channel : data.Channels) {
    for (int i = channel.UpperBound(); i > 1; --i) {
      const tarnlink::MeasureSample sample = channel[i];
      const std::time_t time = sample.Time - kUnixDayZero;
      std::tm civil{};
      gmtime_r(&time, &civil);
      std::fprintf(file, "%04d%02d%02d%02d%02d%02d %d\r\n", civil.tm_year + 1900, civil.tm_mon + 1,
                   civil.tm_mday, civil.tm_hour, civil.tm_min, civil.tm_sec, sample.Value);
    }
  }
  std::fclose(file);
  const double seconds = bench::WallSeconds() - begun;
  std::remove(path.c_str());
  return seconds;
}

double PrintCellsSeconds(const std::string& path, const Graphic& data) {
  const double begun = bench::WallSeconds();
  std::FILE* file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) GiveUp(path.c_str());
  for (int i = 1; i < kSamples; ++i) {
    std::fputs("05/03/2024 14:07:09", file);
    for (int c = 0; c <= data.LastChannel(); ++c) {
      std::fprintf(file, "\t%g", static_cast<double>(data.GetSampleValue(c, i)));
    }
    std::fputs("\r\n", file);
  }
  std::fclose(file);
  const double seconds = bench::WallSeconds() - begun;
  std::remove(path.c_str());
  return seconds;
}

// How long a program takes, with nothing of what it prints. Negative if it failed.
double ProgramSeconds(const std::vector<std::string>& command) {
  std::vector<char*> arguments;
  for (const std::string& each : command) arguments.push_back(const_cast<char*>(each.c_str()));
  arguments.push_back(nullptr);
  const double begun = bench::WallSeconds();
  const pid_t child = fork();
  if (child == 0) {
    const int nowhere = open("/dev/null", O_WRONLY);
    if (nowhere < 0 || dup2(nowhere, STDOUT_FILENO) < 0) _exit(1);
    execvp(arguments[0], arguments.data());
    _exit(1);
  }
  int status = 0;
  if (waitpid(child, &status, 0) != child || status != 0) return -1;
  return bench::WallSeconds() - begun;
}

void Tell(const char* what, double seconds) {
  std::printf("  %-52s %8.1f ms\n", what, seconds * 1e3);
}

// Both by turns, and of each the best: what else the machine does makes the rest. The first in the
// second.
double Ratio(const char* what, const std::function<double()>& first, const char* other,
             const std::function<double()>& second) {
  std::vector<double> firsts;
  std::vector<double> seconds;
  for (int i = 0; i < kRepeats; ++i) {
    firsts.push_back(first());
    seconds.push_back(second());
  }
  const double best_first = *std::min_element(firsts.begin(), firsts.end());
  const double best_second = *std::min_element(seconds.begin(), seconds.end());
  Tell(what, best_first);
  Tell(other, best_second);
  return best_first / best_second;
}

// Kilobytes of this process, "VmHWM:" or "VmRSS:".
double StatusKilobytes(const char* field) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(field)) return std::atof(line.c_str() + std::strlen(field));
  }
  return 0;
}

// A process of its own: what a load takes at its peak beyond the samples.
int LoadMode(tarnlink::Platform& platform, const std::string& path) {
  Files files(platform);
  const double before = StatusKilobytes("VmRSS:");
  files.Load(path);
  constexpr double kStore = 12.0 * kSaved * (tarnlink::kStatusChannel + 1) / 1024;
  long samples = 0;
  for (const MeasureChannel& channel : files.graph.Data.Channels) samples += channel.Count();
  if (samples != static_cast<long>(kSaved) * (tarnlink::kStatusChannel + 1)) return 1;
  bench::Report("memory of a load beyond the store, MiB",
                (StatusKilobytes("VmHWM:") - before - kStore) / 1024, 32, false);
  return bench::AllHeld() ? 0 : 1;
}

void CompareSaving(Files& files, const std::string& path, const std::string& other) {
  const Graphic& data = files.graph.Data;
  files.Save(path);
  const std::string bytes = Bytes(path);
  std::printf("measurement file of %.1f MB\n", static_cast<double>(bytes.size()) / 1e6);
  const auto make = [&] {
    tarnlink::MeasureFileWriter writer(data, {});
    return SourceSeconds(other, writer);
  };
  // Without an old file: to free its room takes as long again.
  const auto save = [&] {
    std::remove(path.c_str());
    return files.Save(path);
  };
  const auto job = [&] {
    return JobSeconds(other, std::make_unique<tarnlink::MeasureFileWriter>(
                                 data, tarnlink::MeasureFileWriter::Content{}));
  };
  bench::Report("saving / write(2), neither synced",
                Ratio("made, and written by the thread", job, "write(2)",
                      [&] { return WriteSeconds(other, bytes, Sync::kNo); }),
                2, false);
  bench::Report("saving from command to end / write(2) and fsync",
                Ratio("saved by the graph", save, "write(2) and fsync",
                      [&] { return WriteSeconds(other, bytes, Sync::kYes); }),
                2, false);
  bench::Report("speed of saving / fprintf",
                1 / Ratio("made and written, one thread", make, "gmtime_r and fprintf",
                          [&] { return PrintSamplesSeconds(other, data); }),
                5, true);
}

void CompareLoading(Files& files, const std::string& path) {
  const auto load = [&] { return files.Load(path); };
  bench::Report("loading / cat",
                Ratio("loaded by the graph", load, "cat > /dev/null",
                      [&] {
                        return ProgramSeconds({"cat", path});
                      }),
                12, false);
  bench::Report("loading / md5sum",
                Ratio("loaded by the graph", load, "md5sum",
                      [&] {
                        return ProgramSeconds({"md5sum", path});
                      }),
                1, false);
}

// The same numbers as lines of two columns, as that reader is made for.
void ComparePandas(Files& files, const std::string& path, const std::string& other) {
  const std::string import = "import pandas";
  if (ProgramSeconds({"/usr/bin/python3", "-c", import}) < 0) {
    std::printf("pandas is not there: not compared\n");
    return;
  }
  std::ofstream table(other, std::ios::binary);
  std::ifstream text(path, std::ios::binary);
  for (std::string line; std::getline(text, line);) {
    if (line.size() > 15 && line[14] == ' ' && line.starts_with("20")) table << line << '\n';
  }
  table.close();
  const std::string read = import + "; import time; b = time.monotonic(); t = pandas.read_csv('" +
                           other + "', sep=' ', header=None); print(time.monotonic() - b)";
  const std::string out = other + ".out";
  const std::string command = "/usr/bin/python3 -c \"" + read + "\" > " + out;
  const auto pandas = [&] {
    if (std::system(command.c_str()) != 0) GiveUp("python3");
    return std::atof(Bytes(out).c_str());
  };
  bench::Report("speed of loading / pandas.read_csv",
                1 / Ratio(
                        "loaded by the graph", [&] { return files.Load(path); },
                        "pandas.read_csv, without its start", pandas),
                4, true);
  std::remove(other.c_str());
}

void CompareExport(Files& files, const std::string& path, const std::string& other) {
  const Graphic& data = files.graph.Data;
  files.Export(path);
  const std::string bytes = Bytes(path);
  std::printf("export of %.1f MB\n", static_cast<double>(bytes.size()) / 1e6);
  const tarnlink::QtLocale locale;
  const auto make = [&] {
    tarnlink::MeasureExport source(data, locale, tarnlink::MeasureExport::Form::kFile);
    return SourceSeconds(other, source);
  };
  const auto save = [&] {
    std::remove(path.c_str());
    return files.Export(path);
  };
  const auto job = [&] {
    return JobSeconds(other, std::make_unique<tarnlink::MeasureExport>(
                                 data, locale, tarnlink::MeasureExport::Form::kFile));
  };
  bench::Report("exporting / write(2), neither synced",
                Ratio("made, and written by the thread", job, "write(2)",
                      [&] { return WriteSeconds(other, bytes, Sync::kNo); }),
                3.5, false);
  bench::Report("exporting from command to end / write(2) and fsync",
                Ratio("exported by the graph", save, "write(2) and fsync",
                      [&] { return WriteSeconds(other, bytes, Sync::kYes); }),
                3.5, false);
  bench::Report("speed of exporting / %g for each cell",
                1 / Ratio("made and written, one thread", make, "fprintf of %g",
                          [&] { return PrintCellsSeconds(other, data); }),
                7, true);
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  tarnlink::QtPlatform platform;
  if (argc == 3 && std::string(argv[1]) == "--load") return LoadMode(platform, argv[2]);
  const QTemporaryDir folder;
  const std::string path = folder.path().toStdString() + "/full.mss";
  const std::string other = folder.path().toStdString() + "/other";
  {
    Files files(platform);
    Fill(files.graph.Data);
    CompareSaving(files, path, other);
    CompareExport(files, folder.path().toStdString() + "/full.txt", other);
    bench::Report("longest wait of an event meanwhile, ms", files.longest_gap * 1e3, 50, false);
  }
  Files files(platform);
  CompareLoading(files, path);
  ComparePandas(files, path, other);
  bench::Report("longest wait of an event meanwhile, ms", files.longest_gap * 1e3, 50, false);
  std::fflush(stdout);
  const std::string load = std::string(argv[0]) + " --load " + path;
  const bool memory_held = std::system(load.c_str()) == 0;
  return bench::AllHeld() && memory_held ? 0 : 1;
}
