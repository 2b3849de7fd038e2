#include "support/fake_world.h"

#include <stdexcept>
#include <utility>

namespace tarnlink {

FakeSerialPort& FakeWorld::port() {
  if (ports_.empty()) throw std::out_of_range("The program has created no port.");
  for (const auto& port : ports_) {
    if (port->PortOpen()) return *port;
  }
  return *ports_.back();
}

std::unique_ptr<SerialPort> FakeWorld::CreatePort() {
  ports_.push_back(std::make_unique<FakeSerialPort>(time_, rack_));
  FakeSerialPort& made = *ports_.back();
  made.on_output = [this, &made](Micros, std::string_view bytes) {
    if (on_output) on_output(made, bytes);
  };
  return std::make_unique<BreakingPort>(made, faults_);
}

std::unique_ptr<DrawingSurface> FakeWorld::CreatePage(const PageSetup& setup) {
  pages_.push_back(std::make_shared<RecordingSurface::Log>());
  page_setups_.push_back(setup);
  return MakeA4Page(setup.landscape, pages_.back());
}

}  // namespace tarnlink
