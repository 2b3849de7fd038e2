#include "fuzz/decoders/decoders.h"

namespace tarnlink {

std::vector<FuzzTarget> DecoderTargets() {
  return {
      AnswerFramesTarget(),      EepromLineTarget(),        FrameBytesTarget(),
      LineDoubtTarget(),         LinkRecordTarget(),        ModbusFramesTarget(),
      ModbusResponsesTarget(),   PanelAnswersTarget(),      ParameterAnswerTarget(),
      ServiceLineTarget(),       SnifferFramesTarget(),     TarnlinkFramesTarget(),
      TarnlinkResponsesTarget(), WriteAcknowledgesTarget(), ZoltCrcTarget(),
      ZoltFramesTarget(),        ZoltMessagesTarget(),      ZoltResponsesTarget(),
  };
}

}  // namespace tarnlink
