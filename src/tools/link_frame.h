// Frames of the three protocols as somebody finds them who only listens: which protocol a request
// is of, where a whole frame stands in what came in, and whether it answers.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tarnlink {

enum class LinkProtocol { kNone, kTarnLink, kZolt, kModbus };

// The protocol whose check holds for the request; for one whose check is broken on purpose the
// protocol that it looks like, and kNone for anything else.
LinkProtocol ProtocolOfRequest(std::string_view request);

// Whether these bytes are one whole frame, a request or an answer, whose check holds.
bool IsWholeFrame(LinkProtocol protocol, std::string_view bytes);

// The slave that a whole frame is from or for: "3", or "10" under Modbus; "" where the protocol has
// no addresses.
std::string SlaveOfFrame(LinkProtocol protocol, std::string_view frame);

// A piece of a text.
struct FramePlace {
  std::size_t begin = 0;
  std::size_t length = 0;
};

// The first frame in `bytes` whose check holds, of those that a slave sends, or that a master sends
// to read.
std::optional<FramePlace> FindFrame(LinkProtocol protocol, std::string_view bytes);

// How many of the first bytes can belong to no frame any more, whatever else comes. Call it for
// bytes in which FindFrame finds nothing.
std::size_t LostBytes(LinkProtocol protocol, std::string_view bytes);

// What a whole frame that came in is to the request that is out.
enum class FrameRole {
  kAnswer,   // it answers
  kRefusal,  // it answers, with a no
  kEcho,     // the request itself
  kOther,    // of another slave, of another request, or of another master
};
FrameRole RoleOf(LinkProtocol protocol, std::string_view request, std::string_view frame);

}  // namespace tarnlink
