// What a frame on the line says, in words.
#pragma once

#include <string>
#include <string_view>

#include "tools/link_frame.h"

namespace tarnlink {

// "slave 3: read class 1, ID 0001". A request whose check is broken says so.
std::string RequestMeaning(LinkProtocol protocol, std::string_view request);

// "slave 3: ID 0001 is 2A00". `request` is what is out; `frame` is whole and its check holds.
std::string AnswerMeaning(LinkProtocol protocol, std::string_view request, std::string_view frame);

// "5 bytes that are no whole frame", "a frame whose check is broken". For `bytes` in which
// FindFrame finds nothing.
std::string BadBytesMeaning(LinkProtocol protocol, std::string_view bytes);

// "0D 01 30".
std::string BytesInHex(std::string_view bytes);

}  // namespace tarnlink
