// The graph's acquisition with the simulated boiler at the other end of the line, and a record of
// that line which says what every channel must hold.
#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "form/boiler_on_line.h"
#include "graph/graph_acquisition.h"
#include "support/fake_world.h"

namespace tarnlink {

// Follows the line by itself: whose request is out, and what came in for it.
class GraphRecord {
 public:
  GraphRecord(FakeWorld& world, const frmGraphic& graph) : world_(world), graph_(graph) {}

  // A request goes out.
  void Ask(std::string_view frame);
  // What the boiler heard and said.
  void Take(const boiler::LogEntry& entry);
  // What the program took from the port.
  void TakeInput(std::string_view bytes);

  // The clock's present second.
  std::int64_t Second() const;
  void SetClock(std::int64_t second);

  // While stopped nothing is expected to be stored.
  bool running = true;
  // A request fails to go out, and its line has no turn.
  void LoseTrack() { lost_track_ = true; }
  // From now on requests without an answer count anew.
  void CountOutAnew();

  std::size_t asked() const { return asked_; }
  int test_commands() const { return test_commands_; }
  // Answers to the request that was out, and those of them that a sample of the same second kept
  // from being stored.
  long answers() const { return answers_; }
  long same_second() const { return same_second_; }
  long others() const { return others_; }  // whole frames that are no such answer
  int struck() const { return struck_; }
  // How many requests are out, and have been at once, at most, since they were counted anew.
  std::size_t out() const { return out_.size(); }
  std::size_t most_out() const { return most_out_; }
  // One that was not its line's turn.
  const std::string& first_wrong_request() const { return first_wrong_request_; }
  // Requests that neither a frame nor the end of the wait for one had called for.
  int hurried() const { return hurried_; }

  // Empty if each channel holds the answers that the boiler gave to its line's requests from this
  // second on: all of them, in their order, at their second, but one a second.
  std::string Difference(std::int64_t since = 0) const;
  // Empty if each sample stood on the line with a sound check and the line's ID while the request
  // of that line was out.
  std::string Unfounded() const;
  long samples() const;

 private:
  static constexpr Micros kSecond = std::chrono::seconds(1);
  static constexpr Micros kHair{100};  // a date in days is not taken to be more exact

  struct Line {
    std::vector<MeasureSample> expected;
    std::vector<MeasureSample> founded;
  };

  bool IsRequestOf(int line, std::string_view frame) const;
  int NextLine() const;
  void Out(std::string_view frame);
  void TakeAnswer(const boiler::LogEntry& entry);
  MeasureSample SampleOf(std::string_view frame) const;
  const MeasureChannel& Channel(std::size_t line) const { return graph_.Data.Channels[line]; }

  FakeWorld& world_;
  const frmGraphic& graph_;
  std::int64_t clock_ = ToSeconds(ToDate({2024, 3, 5, 14, 7, 9}));  // when the world begins
  Micros clock_set_at_{};
  std::vector<Line> lines_{static_cast<std::size_t>(kStatusChannel + 1)};
  int line_ = -1;       // asked last
  int out_line_ = -1;   // whose request is out; -1 for none and for the test command
  std::string out_id_;  // four digits, empty while nothing is waited for
  std::string tail_;    // of what came in, too short for a frame
  bool lost_track_ = false;
  int opens_ = 0;
  Micros asked_at_{};
  std::set<int> out_;
  std::size_t most_out_ = 0;
  std::size_t asked_ = 0;
  long answers_ = 0;
  long same_second_ = 0;
  long others_ = 0;
  int test_commands_ = 0;
  int struck_ = 0;
  int hurried_ = 0;
  std::string first_wrong_request_;
};

// The program's side, a boiler and its record, with a user's hands.
class GraphOnLine {
 public:
  // The acquisition's speed is that of the line, 38400 where it has none.
  explicit GraphOnLine(const boiler::LineOptions& line, std::uint64_t seed = 1);
  ~GraphOnLine();

  void Show(int index);
  void ShowDefaultLines();
  // A hundred lines, of all IDs that the boiler has.
  void ShowAllLines();
  GraphAttribute& Line(int index) {
    return graph.Data.Attributes.at(static_cast<std::size_t>(index));
  }
  const MeasureChannel& Channel(int index) {
    return graph.Data.Channels.at(static_cast<std::size_t>(index));
  }

  void Start();
  // With the question of the menu.
  void StartByMenu() { SwitchByMenu("start", true); }
  void StopByMenu() { SwitchByMenu("stop", false); }
  ScriptedDialog& ExpectBusy();
  // A click on "Test".
  void SendTestMode();
  // The clock is put on or back by so many hours.
  void SetClock(int hours);
  void Advance(Micros span);
  // "running" or "stopped", with what the graph says of it.
  std::string State();

  // The line is sound from now on, but for what is still on its way: within three seconds every
  // line has a sample again, and then none is lost and one request is out at a time.
  void ExpectRecovery(const std::string& what);

  FakeWorld world;
  frmGraphic graph{world};
  frmContextMenu menu{graph};
  int baudrate = 0;
  GraphAcquisition acquisition{graph, menu, {[] { return 1; }, [this] { return baudrate; }}};
  GraphRecord record{world, graph};
  std::function<void(const boiler::LogEntry&)> on_log;
  BoilerOnLine boiler;

 private:
  void SwitchByMenu(const std::string& verb, bool on);
  bool AllHaveSamplesSince(std::int64_t second);
};

// Lines and speeds that differ in what an answer out of turn may be taken for.
struct Screen {
  const char* name;
  std::vector<int> lines;
  boiler::LineOptions line;
};

// The lanes only, one ID twice, many lines, and a line without a speed.
const std::vector<Screen>& Screens();

class OnScreen : public GraphOnLine {
 public:
  explicit OnScreen(const Screen& screen, std::uint64_t seed = 1);

  // As many requests as asked for go out, a test mode command now and then among them. None is
  // waited for longer than its two seconds and those of a line that does not come to rest.
  void Exchange(std::size_t count);
};

}  // namespace tarnlink
