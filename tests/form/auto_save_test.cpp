// Automatic saving: the names of its files, and when it saves.

#include "graph/auto_save.h"

#include <chrono>
#include <string>

#include "form/open_graph.h"

namespace tarnlink {
namespace {

using namespace std::chrono_literals;

constexpr const char* kFolder = "/home/user/measured/";

class AutoSaveTest : public OpenGraph {
 protected:
  std::string NewName(const CivilTime& day = {2024, 3, 5, 14, 7, 9}) {
    return all.auto_save.GetNewFileName(kFolder, ToDate(day));
  }
  static std::string Name(const std::string& number) {
    return kFolder + std::string("05Mar24-") + number + ".mss";
  }
  // Files of the numbers from `first` to `last`.
  void Take(int first, int last) {
    for (int n = first; n <= last; ++n) {
      const std::string number = (n < 10 ? "0" : "") + std::to_string(n);
      world.disk().Put(Name(number), "");
    }
  }
};

// --- Names ---------------------------------------------------------------------------------------

TEST_F(AutoSaveTest, TheFirstFreeNumberIsTaken) {
  EXPECT_EQ(NewName(), Name("00"));
  Take(0, 0);
  EXPECT_EQ(NewName(), Name("01"));
  Take(1, 8);
  EXPECT_EQ(NewName(), Name("09"));
  Take(9, 98);
  EXPECT_EQ(NewName(), Name("99"));
  Take(99, 99);
  EXPECT_EQ(NewName(), Name("100"));
  Take(100, 998);
  EXPECT_EQ(NewName(), Name("999"));
  world.disk().Remove(Name("42"));
  EXPECT_EQ(NewName(), Name("42"));
}

TEST_F(AutoSaveTest, WhenAllAreTakenTheLastIsReplaced) {
  Take(0, 999);
  EXPECT_EQ(NewName(), Name("999"));
}

TEST_F(AutoSaveTest, TheNumberCountsForTheDay) {
  Take(0, 3);
  EXPECT_EQ(NewName({2024, 3, 6, 0, 0, 0}), std::string(kFolder) + "06Mar24-00.mss");
  EXPECT_EQ(NewName({1999, 12, 31, 23, 59, 59}), std::string(kFolder) + "31Dec99-00.mss");
}

TEST_F(AutoSaveTest, TheMonthIsThatOfTheLocale) {
  MonthNames months = EnglishMonthNames();
  months[2] = "M\xC3\xA4rz";
  world.locale().SetMonths(months);
  EXPECT_EQ(NewName(), std::string(kFolder) + "05M\xC3\xA4r24-00.mss");
}

// --- The timer -----------------------------------------------------------------------------------

class AutoSaveTimerTest : public AutoSaveTest {
 protected:
  AutoSaveTimerTest() {
    all.form.Load();
    // As the command does that switches it on.
    menu.mnuAutoSave.Checked = true;
    graph.Data.AutoSaveDay = ToDate({2024, 3, 5});
    graph.AutoSaveTimer->SetInterval(60'000);
    graph.AutoSaveTimer->SetEnabled(true);
    all.auto_save.AutoSaveMeasurements = [this] { ++saved; };
  }

  int saved = 0;
};

TEST_F(AutoSaveTimerTest, SavesOnceTheDayIsMoreThanFiveMinutesOver) {
  world.clock().Set({2024, 3, 6, 0, 3, 0});
  world.Advance(2min);  // to 00:04 and 00:05
  EXPECT_EQ(saved, 0) << "exactly 1445 minutes are not enough";
  world.Advance(1min + 1ms);
  EXPECT_EQ(saved, 1);
}

TEST_F(AutoSaveTimerTest, OneSecondMoreIsEnough) {
  world.clock().Set({2024, 3, 6, 0, 4, 1});
  world.Advance(1min + 1ms);
  EXPECT_EQ(saved, 1);
}

TEST_F(AutoSaveTimerTest, GivesOneFileADay) {
  all.auto_save.AutoSaveMeasurements = [this] {
    ++saved;
    graph.Data.AutoSaveDay += 1;  // as saving does
  };
  world.clock().Set({2024, 3, 5, 0, 0, 30});
  world.Advance(24h + 4min);
  EXPECT_EQ(saved, 0);
  world.Advance(1min + 1ms);
  EXPECT_EQ(saved, 1);
  world.Advance(72h);
  EXPECT_EQ(saved, 4);
}

TEST_F(AutoSaveTimerTest, NeverSavesWhileItIsNotChecked) {
  menu.mnuAutoSave.Checked = false;
  world.clock().Set({2024, 3, 8, 12, 0, 0});
  world.Advance(1h);
  all.form.Unload();
  EXPECT_EQ(saved, 0);
}

TEST_F(AutoSaveTimerTest, LeavingSavesBeforeTheDayIsOver) {
  all.form.Unload();
  EXPECT_EQ(saved, 1);
}

}  // namespace
}  // namespace tarnlink
