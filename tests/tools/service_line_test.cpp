// The line of the service tools, as the options have it.

#include "protocols/service_line.h"

#include "support/fake_world.h"

namespace tarnlink {
namespace {

TEST(ServiceLine, DoublesTwelveHundredAsOftenAsIsStored) {
  int stored = 0;
  const ServiceLine line{[] { return 3; }, [&] { return stored; }};
  FakeWorld world;
  const auto port = world.CreatePort();
  for (const auto& [baudrate, settings] : std::vector<std::pair<int, std::string>>{
           {0, " 1200n,8,1"}, {3, " 9600n,8,1"}, {-4, " 1200n,8,1"}}) {
    stored = baudrate;
    SetServiceLine(*port, line);
    EXPECT_EQ(port->Settings(), settings);
    EXPECT_EQ(port->CommPort(), 3);
  }
}

TEST(ServiceLine, KnowsHowLongARequestAndItsAnswerTake) {
  int stored = 0;
  const ServiceLine line{[] { return 3; }, [&] { return stored; }};
  for (const auto& [baudrate, time] :
       std::vector<std::pair<int, int>>{{0, 266}, {3, 33}, {5, 8}, {-1, 266}}) {
    stored = baudrate;
    EXPECT_EQ(TimeOfExchange(line), time) << baudrate;
  }
}

}  // namespace
}  // namespace tarnlink
