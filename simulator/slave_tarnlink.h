// The controller as a TarnLink slave. The protocol has no slave address and no way to say no.
#pragma once

#include <string>

#include "simulator/frame_collector.h"
#include "simulator/slave.h"
#include "simulator/tarnlink_frames.h"

namespace boiler {

class TarnlinkSlave : public Slave {
 public:
  TarnlinkSlave();

  std::optional<Heard> Hear(char byte) override;
  std::optional<Heard> Silence() override { return collector_.Silence(); }
  bool Waiting() const override { return collector_.Waiting(); }
  void Forget() override { collector_.Forget(); }

  std::string Answer(const Request& request, Controller& controller, WriteEffect effect) override;
  std::string WrongAnswer(const Fault& fault, const Request& request, const std::string& answer,
                          const Controller& controller, Random& random) override;
  std::string BusyAnswer(const Request& request) override;
  std::string ForeignTraffic(Random& random) override;
  std::string WithWrongCheck(const std::string& answer, Random& random) override;
  bool CheckHolds(std::string_view frame) const override { return TarnlinkSumHolds(frame); }
  std::string_view Misfit(FaultKind kind) const override;

 private:
  FrameCollector collector_;
};

}  // namespace boiler
