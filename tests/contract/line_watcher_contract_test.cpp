// Who watches a line hears all that goes over it, whatever the program does with it.
#include <gtest/gtest.h>

#include "contract/serial_port_benches.h"
#include "platform/watched_platform.h"

namespace tarnlink {
namespace {

// What was heard, in order; bytes of one direction that came in pieces are one.
class HeardLine final : public LineWatcher {
 public:
  void BytesSent(std::string_view bytes) override { Add("sent:", bytes); }
  void BytesReceived(std::string_view bytes) override { Add("got:", bytes); }
  void LineClosed() override { Add("closed", {}); }

  std::string text;

 private:
  void Add(const std::string& what, std::string_view bytes) {
    if (what != last_) text.append(text.empty() ? "" : " ").append(what);
    last_ = what;
    text += bytes;
  }

  std::string last_;
};

template <class Bench>
class LineWatcherContract : public testing::Test {
 protected:
  LineWatcherContract() : port(bench.MakePort()) {
    port->SetWatcher(&heard);
    port->SetPortOpen(true);
  }
  ~LineWatcherContract() override { port->SetWatcher(nullptr); }

  void Arrives(std::string_view bytes) {
    const int before = port->InBufferCount();
    bench.FarEndSends(bytes);
    EXPECT_TRUE(bench.RunUntil(
        [&] { return port->InBufferCount() == before + static_cast<int>(bytes.size()); }));
  }

  Bench bench;
  HeardLine heard;
  std::unique_ptr<SerialPort> port;
};

using Benches = testing::Types<FakePortBench, QtPortBench>;
TYPED_TEST_SUITE(LineWatcherContract, Benches, BenchNames);

TYPED_TEST(LineWatcherContract, HearsWhatIsSentAndWhatComesIn) {
  this->port->Output("ask");
  this->Arrives("answer");
  EXPECT_EQ(this->port->Input(), "answer");
  this->port->Output("again");
  this->Arrives("more");
  EXPECT_EQ(this->heard.text, "sent:ask got:answer sent:again got:more");
}

TYPED_TEST(LineWatcherContract, HearsWhatNobodyReadsOnce) {
  this->Arrives("ab");
  this->Arrives("cd");
  EXPECT_EQ(this->heard.text, "got:abcd");
  this->port->ClearInBuffer();
  this->Arrives("ef");
  this->port->SetPortOpen(false);
  EXPECT_EQ(this->heard.text, "got:abcdef closed");
}

TYPED_TEST(LineWatcherContract, HearsWhatIsThrownAwayBeforeItCanBeRead) {
  this->bench.FarEndSends("late");
  this->port->ClearInBuffer();
  this->bench.RunFor(40ms);
  this->Arrives("new");
  EXPECT_EQ(this->heard.text, "got:latenew");
  EXPECT_EQ(this->port->Input(), "new");
}

TYPED_TEST(LineWatcherContract, HearsOfALostDeviceOnce) {
  this->port->Output("x");
  this->bench.PullOut();
  EXPECT_TRUE(this->bench.RunUntil([&] { return !this->port->PortOpen(); }));
  this->bench.RunFor(40ms);
  this->port->SetPortOpen(false);
  EXPECT_EQ(this->heard.text, "sent:x closed");
}

TYPED_TEST(LineWatcherContract, HearsOfAPortThatIsDestroyed) {
  this->port = this->bench.MakePort();  // the open one goes
  EXPECT_EQ(this->heard.text, "closed");
}

TYPED_TEST(LineWatcherContract, ASecondWatcherHearsInPlaceOfTheFirst) {
  HeardLine second;
  this->port->SetWatcher(&second);
  this->port->Output("x");
  this->port->SetWatcher(nullptr);
  this->port->Output("y");
  EXPECT_EQ(second.text, "sent:x");
  EXPECT_EQ(this->heard.text, "");
}

TEST(WatchedPlatform, EveryPortThatItMakesIsHeard) {
  FakeWorld world;
  HeardLine heard;
  WatchedPlatform watched(world, heard);
  const auto first = watched.CreatePort();
  const auto second = watched.CreatePort();
  first->SetPortOpen(true);
  first->Output("a");
  first->SetPortOpen(false);
  second->SetPortOpen(true);
  second->Output("b");
  EXPECT_EQ(heard.text, "sent:a closed sent:b");
  EXPECT_EQ(&watched.clock(), &world.clock());
  EXPECT_EQ(&watched.dialogs(), &world.dialogs());
}

}  // namespace
}  // namespace tarnlink
