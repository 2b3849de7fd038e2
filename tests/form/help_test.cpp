// The Help Topics entry.

#include <gtest/gtest.h>

#include "form/desk_fixture.h"

namespace tarnlink {
namespace {

class HelpEntry : public DeskTest {
 protected:
  HelpEntry() { StartProgram(); }
};

TEST_F(HelpEntry, OpensTheShippedPage) {
  main().M_HelpTopics.Press();
  EXPECT_EQ(world.shell().opened, std::vector<std::string>{"/usr/share/tarnlink/HELP.HTML"});
}

TEST_F(HelpEntry, SaysWhenNothingOpensThePage) {
  world.shell().files_open = false;
  world.dialogs().ExpectMessageBox(
      {.text = "The help cannot be shown.",
       .title = "TarnLink",
       .icon = Icon::kExclamation,
       .detail = "Nothing on this machine opens /usr/share/tarnlink/HELP.HTML, or it is not "
                 "there."});
  main().M_HelpTopics.Press();
}

}  // namespace
}  // namespace tarnlink
