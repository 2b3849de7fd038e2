#include "plug_line.h"

#include <stdlib.h>

#include <algorithm>
#include <iostream>

namespace e2e {

namespace {

constexpr int kDefaultPlugs = 5;
constexpr int kMany = 500;  // cycles, in whose second half the caches are filled
constexpr int kKinds = 5;   // of pulling
constexpr Pull kMeasured = Pull::kInAnswer;
constexpr double kHighestShare = 0.05;  // of a processor
constexpr std::int64_t kKibibyte = 1024;
// What may be open in passing, such as a folder that is being looked at. A leak of one a cycle is
// more than that in the shortest run.
constexpr int kMostPassingFiles = 2;
// What the second half of many cycles may add: Qt's caches of pictures and letters are bounded, but
// grow for longer than that.
constexpr std::int64_t kMostKibibytes = 4096;

}  // namespace

int PlugLine::Plugs() {
  const char* const text = getenv("TARNLINK_PLUGS");
  return text == nullptr ? kDefaultPlugs : std::max(kKinds, std::stoi(text));
}

void PlugLine::StartOn(const std::string& protocol, const std::vector<std::string>& options,
                       const std::string& screen) {
  const std::string link = folder.Path("line");
  std::vector<std::string> command = {BOILER_SIMULATOR_PROGRAM,
                                      "--protocol",
                                      protocol,
                                      "--link",
                                      link,
                                      "--until-eof",
                                      "--at-once",
                                      "--log",
                                      folder.Path("line.log")};
  command.insert(command.end(), options.begin(), options.end());
  boiler = std::make_unique<Process>(command, std::map<std::string, std::string>{});
  device = boiler->ReadLine(kToolPatience);
  ASSERT_NE(device, "");
  const std::string index = protocol == "tarnlink" ? "0" : protocol == "zolt" ? "1" : "2";
  const std::string settings = "[Communication]\nProtocol=" + index +
                               "\nBaudrate=3\nCommport=1\nStopBits=0\nParity=0\nIgnoreErrors=1\n"
                               "MsgTimeout=5\n\n[Paths]\nLogPath=" +
                               folder.Path("") + "\n\n[Ports]\nCOM1=" + link + "\n";
  const std::string file = screen.empty() ? "" : folder.Write("screen.wcr", screen);
  watch_ = std::make_unique<PlugWatch>(folder);
  program = std::make_unique<DrivenProgram>(folder, settings, file);
  ASSERT_TRUE(program->Becomes("get frm_Main visible", "true"));
  Rest();
  ASSERT_GT(files_at_rest_, 0);
}

std::size_t PlugLine::Noted() const { return std::filesystem::file_size(folder.Path("line.log")); }

bool PlugLine::HasNoted(std::size_t bytes) const {
  if (Eventually([&] { return Noted() >= bytes; })) return true;
  ADD_FAILURE() << "The boiler has heard and said hardly anything.";
  return false;
}

void PlugLine::TakeBox(const std::string& box, const std::string& button,
                       const std::string& front) {
  ASSERT_TRUE(Says("modal", box));
  program->Click(button);
  ASSERT_TRUE(ComesToFront(front));
}

void PlugLine::Rest() {
  constexpr int kSteady = 20;  // looks
  int steady = 0;
  EXPECT_TRUE(Eventually([&] {
    const int files = watch_->Files();
    steady = files == files_at_rest_ ? steady + 1 : 0;
    files_at_rest_ = files;
    return steady == kSteady;
  }));
}

bool PlugLine::HasLetGo() {
  if (Eventually([&] { return watch_->Files() <= files_at_rest_; })) return true;
  ADD_FAILURE() << "More descriptors than " << files_at_rest_ << ":" << watch_->FileNames();
  return false;
}

double PlugLine::ShareOfProcessor(double seconds) {
  constexpr double kThousand = 1000;
  const double before = program->process().ProcessorSeconds();
  EXPECT_EQ(program->process().WaitForEnd(static_cast<int>(seconds * kThousand)), -1);
  return (program->process().ProcessorSeconds() - before) / seconds;
}

// What a busy machine makes of one look is not the program's: it spins in each of them, or not.
double PlugLine::CalmestShare() {
  constexpr int kLooks = 4;
  double calmest = 1;
  for (int look = 0; look < kLooks && calmest >= kHighestShare; ++look)
    calmest = std::min(calmest, ShareOfProcessor(IsLong() ? 5 : 1));
  return calmest;
}

void PlugLine::SeeThatItIsCalm(int cycle) {
  constexpr int kTimes = 5;
  const int stride = std::max(1, Plugs() / kKinds / kTimes) * kKinds;
  if (cycle % stride != static_cast<int>(kMeasured)) return;
  const double share = CalmestShare();
  EXPECT_LT(share, kHighestShare);
  highest_share_ = std::max(highest_share_, share);
}

// Each time round one further: what is done with the program while the cable is out takes turns,
// too.
Pull PlugLine::PullOf(int cycle) const {
  return static_cast<Pull>((cycle + cycle / kKinds) % kKinds);
}

void PlugLine::PullOut(Pull pull) {
  const auto obey = [this](const std::string& command) { EXPECT_EQ(Tell(command), "ok"); };
  switch (pull) {
    case Pull::kAnyTime:
      return obey("unplug");
    case Pull::kBehindAnswer:
      return obey("fault unplug#1");
    case Pull::kInAnswer:
      return obey("fault unplug_midframe#1");
    case Pull::kInRequest:
      return obey("fault unplug_while_writing#1");
    case Pull::kLooseContact:
      obey("unplug");
      return obey("replug");
  }
}

void PlugLine::Cycle(const PlugSubject& subject, int cycle) {
  const Pull pull = PullOf(cycle);
  subject.start(cycle);
  if (HasFailure()) return;
  PullOut(pull);
  const std::string front = subject.told(cycle, pull);
  if (HasFailure()) return;
  SeeThatItIsCalm(cycle);
  EXPECT_EQ(Front(), front) << "There is nothing more to be told.";
  // Always at the same moment.
  if (cycle % kKinds == static_cast<int>(kMeasured)) held_.push_back(watch_->Look());
  EXPECT_EQ(Tell("clear"), "ok");
  EXPECT_EQ(Tell("replug"), "ok");
}

void PlugLine::Endure(const PlugSubject& subject) {
  for (int cycle = 0; cycle < Plugs(); ++cycle) {
    SCOPED_TRACE(subject.name + ", cycle " + std::to_string(cycle));
    Cycle(subject, cycle);
    if (HasFailure()) return;
  }
  LookBack(subject);
}

// The first half fills caches; the second one needs nothing more.
void PlugLine::LookBack(const PlugSubject& subject) const {
  ASSERT_FALSE(held_.empty()) << "Too few cycles.";
  const std::size_t half = held_.size() / 2;
  std::vector<double> blocks;
  std::vector<double> bytes;
  for (std::size_t i = half; i < held_.size(); ++i) {
    blocks.push_back(static_cast<double>(held_[i].blocks) / kKinds);
    bytes.push_back(static_cast<double>(held_[i].bytes) / kKinds);
    EXPECT_LE(held_[i].files, files_at_rest_ + kMostPassingFiles) << subject.name;
  }
  const double slope = Slope(blocks);
  const auto growth = (held_.back().resident - held_[half].resident) / kKibibyte;
  std::cout << subject.name << ": " << Plugs() << " cycles, at most " << highest_share_ * 100
            << " % of a processor, " << held_.back().files << " descriptors";
  if (!IsLong()) {
    std::cout << "\n";
    return;
  }
  if (Plugs() >= kMany) {
    EXPECT_LT(slope, subject.most_blocks) << subject.name;
    EXPECT_LT(growth, kMostKibibytes) << subject.name;
  }
  std::cout << ", behind the first half " << slope << " blocks and " << Slope(bytes)
            << " bytes of the heap a cycle, " << growth << " KiB of memory in all\n";
}

}  // namespace e2e
