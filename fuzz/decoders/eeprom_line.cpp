#include "tools/eeprom_line.h"

#include <chrono>
#include <memory>
#include <utility>

#include "fuzz/claim.h"
#include "fuzz/decoders/decoders.h"
#include "fuzz/decoders/line_bytes.h"
#include "protocols/frame_bytes.h"
#include "protocols/zolt_frame.h"
#include "support/fake_world.h"
#include "tools/plain_host.h"

namespace tarnlink {
namespace {

constexpr int kMostSteps = 48;
constexpr int kMostTime = 8'000;  // ms

class Exchange {
 public:
  explicit Exchange(FuzzInput& input) : input_(input) {
    line_.Answered = [this](std::string_view frame) { return Take(frame); };
    line_.Repeated = [](const std::string& trouble) {
      Claim(!trouble.empty() && trouble.size() < 200, "a repetition is told in a sentence");
    };
    line_.Lost = [this](const std::string& reason) {
      Claim(!reason.empty(), "a loss has a reason");
      Claim(!port_->PortOpen(), "a lost port is closed");
      is_open_ = false;
    };
    world_.on_output = [this](FakeSerialPort&, std::string_view) { Heard(); };
    Open();
  }
  ~Exchange() { world_.on_output = nullptr; }
  Exchange(const Exchange&) = delete;
  Exchange& operator=(const Exchange&) = delete;

  void Run() {
    for (int step = 0; step < kMostSteps && passed_ < kMostTime && !input_.AtEnd(); ++step) Step();
    line_.Close();
    Claim(line_.IsReady() && !port_->PortOpen() && !timer_->Enabled(), "a line can be left");
  }

 private:
  // A busy or missing port is told by an error.
  void Open() {
    try {
      line_.Open();
      is_open_ = true;
    } catch (const RunTimeError&) {
      is_open_ = false;
      line_.Close();
    }
  }

  // Told behind the step, for nothing of the program may be asked to carry a claim.
  void Heard() {
    const Micros since = world_.now() - sent_at_;
    const bool is_answered = came_ >= zolt_frame::kLength;
    const bool is_given_up = since >= std::chrono::milliseconds(EepromLine::kAnswerTime);
    if (!is_answered && !is_given_up && !std::exchange(is_wanted_, false)) is_hurried_ = true;
    sent_at_ = world_.now();
    came_ = 0;
  }

  bool Take(std::string_view frame) {
    Claim(IsSoundZolt(frame), "no answer whose check fails");
    Claim(zolt_frame::Text(frame, zolt_frame::kSlave) == "0" ||
              zolt_frame::KindOf(zolt_frame::TypeOf(frame)) == zolt_frame::kCorruptedMessage,
          "no answer of another slave");
    return input_.Below(4) > 0;
  }

  void Send() {
    if (!is_open_ || !line_.IsReady()) return;
    const bool is_write = input_.Coin();
    const std::string id = is_write ? "FFFE" : "FFAB";
    is_wanted_ = true;
    line_.Send(zolt_frame::Request(is_write ? zolt_frame::kWriteMemory : zolt_frame::kReadMemory,
                                   "0", id, HexDigits(input_.Word(), 4)),
               "0", id);
  }

  std::string Answer() {
    std::string body = line_.LastMessage.substr(0, zolt_frame::kLength);
    if (body.size() != zolt_frame::kLength) return {};
    body = body.substr(1, 10);
    const std::uint8_t kind = input_.Byte();
    // Mostly as it should be.
    body[0] = static_cast<char>(kind < 0xC0 ? static_cast<unsigned char>(body[0]) + 0x10 : kind);
    return SoundZolt(body);
  }

  void Receive(std::string_view bytes) {
    // In two pieces, with some time between them.
    const std::size_t cut = input_.Coin() ? input_.Byte() % (bytes.size() + 1) : 0;
    if (cut > 0) Come(bytes.substr(0, cut));
    if (cut > 0) Advance(input_.Below(16));
    Come(bytes.substr(cut));
    world_.Settle();
  }

  void Come(std::string_view bytes) {
    if (world_.port().PortOpen()) came_ += static_cast<int>(bytes.size());
    world_.port().Receive(bytes);
  }

  void Advance(int milliseconds) {
    passed_ += milliseconds;
    world_.Advance(std::chrono::milliseconds(milliseconds));
  }

  void Step() {
    const int repeats = line_.Repeats();
    switch (input_.Below(10)) {
      case 0:
      case 1:
        Send();
        break;
      case 2:
      case 3:
      case 4:
        Receive(Answer());
        break;
      case 5:
        Receive(OnTheLine(input_, Answer()));
        break;
      case 6:
        Advance(10 * input_.Byte() % 1100);
        break;
      case 7:
        // Whoever calls it so gives up what is out.
        is_wanted_ = true;
        line_.AwaitQuiet(input_.Byte());
        break;
      case 8:
        if (input_.Below(4) == 0) world_.port().Unplug();
        world_.port().PlugIn();
        Open();
        break;
      default:
        Advance(20);
        break;
    }
    Claim(line_.Repeats() <= repeats + 16, "a request is not repeated without end");
    Claim(!is_hurried_, "one request is out at a time");
    Claim(line_.LastMessage.empty() || line_.LastMessage.size() == zolt_frame::kLength,
          "what goes out is a frame");
  }

  FuzzInput& input_;
  FakeWorld world_;
  PlainHost plain_{world_};
  std::unique_ptr<SerialPort> port_ = world_.CreatePort();
  std::unique_ptr<Timer> timer_ = world_.CreateTimer();
  EepromLine line_{plain_.host, *port_, *timer_};
  bool is_open_ = false;
  int passed_ = 0;          // ms
  int came_ = 0;            // bytes, since the last request went out
  Micros sent_at_{};        // of that
  bool is_wanted_ = false;  // another one may go out, whether it is answered or not
  bool is_hurried_ = false;
};

void Run(std::string_view bytes) {
  FuzzInput input(bytes);
  Exchange(input).Run();
}

std::vector<std::string> Seeds() {
  using namespace std::string_literals;
  return {"\0\1\x12\x80\2\x10\0\0\0\0\x34\x12\2\x10\1\5\5\1"s,
          "\0\1\x12\x80\6\x6E\6\x6E\6\x6E\2\x10\0\1\6\x6E"s,
          "\0\0\x12\x80\5\x10\0\3\1\0\6\x30\2\x10\0\1\x08\0\0\1\1\1\6\x6E"s};
}

}  // namespace

FuzzTarget EepromLineTarget() { return {"eeprom_line", Run, Seeds}; }

}  // namespace tarnlink
