#include "files/map_file_type.h"

#include <gtest/gtest.h>

#include <string>

#include "support/pieces.h"
#include "support/prefixes.h"
#include "support/samples.h"

namespace tarnlink {
namespace {

// The type of a file, which must be the same whatever pieces it comes in.
std::int16_t Type(const std::string& name, std::string_view text) {
  const std::int16_t type = ReadInPieces(MapFileType(name), text, text.size());
  for (const std::size_t size : PieceSizes(text)) {
    EXPECT_EQ(ReadInPieces(MapFileType(name), text, size), type) << "pieces of " << size;
  }
  return type;
}

TEST(MapFileType, ALineWithTargetCpuMakesAListing) {
  EXPECT_EQ(Type("a.lst", "Target CPU"), 2);
  EXPECT_EQ(Type("a.lst", "x\r\n\r\n  Target CPU: any\r\ny\r\n"), 2);
  EXPECT_EQ(Type("a.lst", "x\nTarget CPU\n"), 2);
  EXPECT_EQ(Type("/jobs/lst", "Target CPU"), 2);
}

TEST(MapFileType, AListingWithoutItIsUnknown) {
  for (const std::string text : {"", "\r\n", "target cpu", "Target  CPU", "Target\r\nCPU",
                                 "TargetCPU", "Target CP", "__cpu_name = ATmega64"}) {
    EXPECT_EQ(Type("a.lst", text), 255) << text;
  }
}

TEST(MapFileType, TheLineWithTheProcessorsNameTellsTheFamily) {
  EXPECT_EQ(Type("a.map", "__cpu_name = ATmega64"), 0);
  EXPECT_EQ(Type("a.map", "x\r\n  ATmega128 is the __cpu_name\r\n"), 0);
  EXPECT_EQ(Type("a.map", "__cpu_name=ATxmega64\n"), 1);
  EXPECT_EQ(Type("a.map", "ATmega64\n__cpu_name=ATxmega64\n"), 1);
  EXPECT_EQ(Type("map", "__cpu_name=ATmega64\n"), 0);
}

TEST(MapFileType, AnAtmegaGoesBeforeAnXmegaOnOneLine) {
  EXPECT_EQ(Type("a.map", "__cpu_name ATxmega64 ATmega64"), 0);
}

TEST(MapFileType, AMapWithoutAFamilyOnThatLineIsUnknown) {
  for (const std::string text :
       {"", "ATmega64\nATxmega64\n", "__cpu_name = other", "__cpu_name = atmega64",
        "__cpu_name = ATMEGA64", "__cpu_name = ATXmega64", "__CPU_NAME = ATmega64",
        "__cpu_name\r\n= ATmega64", "__cpu name = ATmega64", "Target CPU ATmega64"}) {
    EXPECT_EQ(Type("a.map", text), 255) << text;
  }
}

TEST(MapFileType, OnlyTheFirstLineWithTheProcessorsNameCounts) {
  EXPECT_EQ(Type("a.map", "__cpu_name = other\n__cpu_name = ATmega64\n"), 255);
  EXPECT_EQ(Type("a.map", "__cpu_name = ATxmega64\n__cpu_name = ATmega64\n"), 1);
  EXPECT_EQ(Type("a.map", "__cpu_name = ATmega64\n__cpu_name = other\n"), 0);
  EXPECT_EQ(Type("a.map", "__cpu_name = other\n__cpu_name = ATmega64"), 255);
}

TEST(MapFileType, AnyOtherNameIsUnknownAndItsCaseCounts) {
  const std::string both = "Target CPU\n__cpu_name = ATmega64\n";
  ASSERT_EQ(Type("a.lst", both), 2);
  ASSERT_EQ(Type("a.map", both), 0);
  for (const std::string name : {"a.LST", "a.MAP", "a.Lst", "a.mAp", "a.txt", "a.map.txt", "a.ma",
                                 "st", "", "a.lst ", "lst/a", "a.map2"}) {
    EXPECT_EQ(Type(name, both), 255) << name;
  }
}

TEST(MapFileType, NothingMoreIsWantedOnceItIsKnown) {
  MapFileType listing("a.lst");
  EXPECT_TRUE(listing.Take("Target "));
  EXPECT_TRUE(listing.Take("CPU"));
  EXPECT_FALSE(listing.Take("\n"));
  MapFileType unknown("a.map");
  EXPECT_TRUE(unknown.Take("x\n"));
  EXPECT_FALSE(unknown.Take("__cpu_name = other\n__cpu_name = ATmega64\n"));
  EXPECT_EQ(unknown.Finish(), 255);
  MapFileType other("a.txt");
  EXPECT_FALSE(other.Take("x\n"));
}

TEST(MapFileType, IsKnownOfEverySampleOnceItsSignatureHasCome) {
  struct Case {
    std::string sample;
    std::string signature;
    std::int16_t type;
  };
  for (const Case& each : {Case{"atmega.map", "= ATmega", 0}, Case{"xmega.map", "= ATxmega", 1},
                           Case{"nec.lst", "Target CPU", 2}}) {
    SCOPED_TRACE(each.sample);
    const std::string bytes = SampleBytes(each.sample);
    const std::size_t known = bytes.find(each.signature) + each.signature.size();
    ASSERT_LT(known, bytes.size());
    ForEveryPrefix(bytes, [&](std::string_view prefix) {
      EXPECT_EQ(ReadInPieces(MapFileType(each.sample), prefix, 1000),
                prefix.size() < known ? 255 : each.type);
    });
  }
}

}  // namespace
}  // namespace tarnlink
