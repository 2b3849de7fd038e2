#include "protocols/product_names.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>

namespace tarnlink {
namespace {

TEST(GetTypeName, KnowsEveryTypeAndCallsTheRestUnknown) {
  const std::map<int, std::string> names = {
      {1, "A"},  {2, "AM"},  {3, "AL"}, {4, "C"},  {5, "CM"}, {6, "CL"},  {7, "V"},     {8, "S"},
      {9, "BF"}, {10, "DM"}, {11, "B"}, {12, "H"}, {13, "R"}, {14, "BD"}, {99, "modem"}};
  for (int code = 0; code < 256; ++code) {
    const auto known = names.find(code);
    EXPECT_EQ(GetTypeName(static_cast<std::uint8_t>(code)),
              known == names.end() ? "unknown" : known->second)
        << code;
  }
}

TEST(GetProductName, KnowsEveryModelAndIsEmptyForTheRest) {
  const std::map<int, std::string> names = {{1, "R1862"}, {2, "R1865"}, {3, "R1866"}};
  for (int code = 0; code < 256; ++code) {
    const auto known = names.find(code);
    EXPECT_EQ(GetProductName(static_cast<std::uint8_t>(code)),
              known == names.end() ? "" : known->second)
        << code;
  }
}

}  // namespace
}  // namespace tarnlink
