// The controller as a ZOLT slave, under one or several addresses.
#pragma once

#include <cstdint>
#include <set>
#include <string>

#include "simulator/frame_collector.h"
#include "simulator/slave.h"
#include "simulator/zolt_frames.h"

namespace boiler {

// Cells of the memory that one write through class 7 is taken to.
struct WriteOnceCells {
  std::set<std::uint16_t> refusing;   // further writes are out of range
  std::set<std::uint16_t> forgetful;  // further writes are acknowledged, and not stored
};

class ZoltSlave : public Slave {
 public:
  // `addresses` are characters of kZoltSlaves. A frame whose check is wrong is ignored, or answered
  // as corrupted. Three parameters can have limits that are wrong.
  explicit ZoltSlave(std::string addresses = "0", bool answers_corrupted = false,
                     bool has_wrong_limits = false, WriteOnceCells write_once = {});

  std::optional<Heard> Hear(char byte) override;
  std::optional<Heard> Silence() override { return collector_.Silence(); }
  bool Waiting() const override { return collector_.Waiting(); }
  void Forget() override { collector_.Forget(); }

  std::string Answer(const Request& request, Controller& controller, WriteEffect effect) override;
  std::string WrongAnswer(const Fault& fault, const Request& request, const std::string& answer,
                          const Controller& controller, Random& random) override;
  std::string BusyAnswer(const Request&) override { return ""; }
  std::string ForeignTraffic(Random& random) override;
  std::string WithWrongCheck(const std::string& answer, Random& random) override;
  bool CheckHolds(std::string_view frame) const override { return ZoltCheckHolds(frame); }
  std::string_view Misfit(FaultKind) const override { return ""; }

 private:
  Heard Complete(std::string frame) const;
  // What becomes of a write that would otherwise have `effect`.
  WriteEffect EffectAt(const ZoltRequest& asked, WriteEffect effect);
  bool IsOurs(char slave) const { return addresses_.find(slave) != std::string::npos; }

  std::string addresses_;
  bool answers_corrupted_;
  bool has_wrong_limits_;
  WriteOnceCells write_once_;
  std::set<std::uint16_t> written_;  // of these cells
  FrameCollector collector_;
};

}  // namespace boiler
