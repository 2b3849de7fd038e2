// One target a decoder of bytes from the line.
#pragma once

#include "fuzz/target.h"

namespace tarnlink {

FuzzTarget AnswerFramesTarget();
FuzzTarget EepromLineTarget();
FuzzTarget FrameBytesTarget();
FuzzTarget LineDoubtTarget();
FuzzTarget LinkRecordTarget();
FuzzTarget ModbusFramesTarget();
FuzzTarget ModbusResponsesTarget();
FuzzTarget PanelAnswersTarget();
FuzzTarget ParameterAnswerTarget();
FuzzTarget ServiceLineTarget();
FuzzTarget SnifferFramesTarget();
FuzzTarget TarnlinkFramesTarget();
FuzzTarget TarnlinkResponsesTarget();
FuzzTarget WriteAcknowledgesTarget();
FuzzTarget ZoltCrcTarget();
FuzzTarget ZoltFramesTarget();
FuzzTarget ZoltMessagesTarget();
FuzzTarget ZoltResponsesTarget();

}  // namespace tarnlink
