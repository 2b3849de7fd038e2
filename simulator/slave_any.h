// A controller that understands whichever protocol it is spoken to: the first byte behind a whole
// frame or a silence decides, 04 for TarnLink, 0D for ZOLT, any other for Modbus. For trying things
// out with one port; tests of a protocol take its own slave, which is stricter about noise.
#pragma once

#include <memory>

#include "simulator/slave.h"

namespace boiler {

class AnySlave final : public Slave {
 public:
  // Owns the three.
  AnySlave(std::unique_ptr<Slave> tarnlink, std::unique_ptr<Slave> zolt,
           std::unique_ptr<Slave> modbus);

  std::optional<Heard> Hear(char byte) override;
  std::optional<Heard> Silence() override { return spoken_->Silence(); }
  bool Waiting() const override { return spoken_->Waiting(); }
  bool EndsInSilence() const override { return spoken_->EndsInSilence(); }
  void Forget() override { spoken_->Forget(); }

  std::string Answer(const Request& request, Controller& controller, WriteEffect effect) override {
    return spoken_->Answer(request, controller, effect);
  }
  std::string WrongAnswer(const Fault& fault, const Request& request, const std::string& answer,
                          const Controller& controller, Random& random) override {
    return spoken_->WrongAnswer(fault, request, answer, controller, random);
  }
  bool NamesId(const Request& request) const override { return spoken_->NamesId(request); }
  std::string BusyAnswer(const Request& request) override { return spoken_->BusyAnswer(request); }
  std::string ForeignTraffic(Random& random) override { return spoken_->ForeignTraffic(random); }
  std::string WithWrongCheck(const std::string& answer, Random& random) override {
    return spoken_->WithWrongCheck(answer, random);
  }
  bool CheckHolds(std::string_view frame) const override { return spoken_->CheckHolds(frame); }

  // A fault has to fit all three.
  std::string_view Misfit(FaultKind kind) const override;

 private:
  std::unique_ptr<Slave> tarnlink_;
  std::unique_ptr<Slave> zolt_;
  std::unique_ptr<Slave> modbus_;
  Slave* spoken_;  // the one that the last byte was for
};

}  // namespace boiler
