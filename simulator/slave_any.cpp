#include "simulator/slave_any.h"

#include <utility>

#include "simulator/tarnlink_frames.h"
#include "simulator/zolt_frames.h"

namespace boiler {

AnySlave::AnySlave(std::unique_ptr<Slave> tarnlink, std::unique_ptr<Slave> zolt,
                   std::unique_ptr<Slave> modbus)
    : tarnlink_(std::move(tarnlink)),
      zolt_(std::move(zolt)),
      modbus_(std::move(modbus)),
      spoken_(tarnlink_.get()) {}

std::optional<Heard> AnySlave::Hear(char byte) {
  if (!spoken_->Waiting()) {
    spoken_ = byte == kTarnlinkStart ? tarnlink_.get()
              : byte == kZoltStart   ? zolt_.get()
                                     : modbus_.get();
  }
  return spoken_->Hear(byte);
}

std::string_view AnySlave::Misfit(FaultKind kind) const {
  for (const Slave* slave : {tarnlink_.get(), zolt_.get(), modbus_.get()}) {
    if (const std::string_view reason = slave->Misfit(kind); !reason.empty()) return reason;
  }
  return "";
}

}  // namespace boiler
