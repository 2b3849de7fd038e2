// The names of data IDs and the texts of error codes: reading their files, the line that tells what
// was wrong with them, and the entries that add them to the project.

#include <gtest/gtest.h>

#include <string>

#include "form/desk_fixture.h"

namespace tarnlink {
namespace {

constexpr const char* kIds = "/home/user/work/boiler.ids";
constexpr const char* kOther = "/home/user/work/other.ids";
constexpr const char* kErrors = "/home/user/work/boiler.erc";

class NamesTest : public DeskTest {
 protected:
  NamesTest() {
    world.disk().Put("/usr/share/tarnlink/default.ids", "*Shipped\r\nPump,1,1,L\r\n");
    StartProgram();
  }

  IdNames& ids() { return program().ids; }
  void Read(const std::string& text) {
    world.disk().Put(kIds, text);
    main().ReadIDItems(kIds);
  }
  std::string Names() {
    std::string text;
    for (const IDItem& item : ids().items()) text += (text.empty() ? "" : " ") + item.Name;
    return text;
  }
  // "" while the line is hidden.
  std::string Notice() {
    const Label& line = main().lbl_IdNotice;
    EXPECT_EQ(line.Visible.get(), !line.Caption->empty());
    return line.Caption;
  }
  std::string Version() { return program().settings.Frame9.Caption; }
  // The error texts that there are: "7=Low  water; 255=Fan failure".
  std::string Texts() {
    program().ids.LoadErrorTexts();
    std::string text;
    const ErrorTexts& texts = ids().error_texts();
    for (std::size_t i = 0; i < texts.size(); ++i) {
      if (texts[i].empty()) continue;
      text += (text.empty() ? "" : "; ") + std::to_string(i) + "=" + texts[i];
    }
    return text;
  }
  ScriptedDialog& ExpectRefusal(const std::string& text) {
    return world.dialogs().ExpectMessageBox(
        {.text = text, .title = "TarnLink", .icon = Icon::kExclamation});
  }
};

// --- IDs ---

TEST_F(NamesTest, AreThoseOfTheOptionsFileAtFirst) {
  EXPECT_EQ(Names(), "Pump");
  EXPECT_EQ(ids().IDRevision(), "Shipped");
  EXPECT_EQ(Notice(), "");
}

TEST_F(NamesTest, AreReadWithTheRevisionOfTheirFile) {
  Read("*R1.1\r\nTemperature,1A,3,H\r\n-Status,2F,L\r\n*R1.2\r\nFlow,10,2\r\n");
  EXPECT_EQ(Names(), "Temperature Status Flow");
  EXPECT_EQ(Version(), "R1.2");
  EXPECT_EQ(ids().items().at(0), (IDItem{"Temperature", 26, 3, 0}));
  EXPECT_EQ(ids().items().at(1), (IDItem{"Status", 47, 0, 1}));
  EXPECT_EQ(ids().items().at(2), (IDItem{"Flow", 16, 2, 2}));
}

TEST_F(NamesTest, HaveAnUnknownRevisionWithoutItsLine) {
  Read("*R1.2\r\nFlow,10,2\r\n");
  Read("Flow,10,2\r\n");
  EXPECT_EQ(Version(), "Unknown revision");
}

TEST_F(NamesTest, AreAllGoneAfterABadLineWhichIsTold) {
  Read("Flow,10,2\r\n\r\nTank,11,2\r\n");
  EXPECT_EQ(Names(), "");
  EXPECT_EQ(Notice(), "boiler.ids, line 2: The ID is missing.");
  Read("Flow,10,2\r\nTank,XY,2\r\n");
  EXPECT_EQ(Notice(), "boiler.ids, line 2: The ID is no hexadecimal number.");
  Read("*R1\r\n");
  EXPECT_EQ(Notice(), "boiler.ids: The file holds no IDs.");
  Read("Flow,10,2\r\n");
  EXPECT_EQ(Names(), "Flow");
  EXPECT_EQ(Notice(), "");
}

TEST_F(NamesTest, EndWithTheEntryThatIsOneTooMany) {
  std::string text;
  for (int i = 0; i < kMostIds; ++i) text += "v,1,1\r\n";
  Read(text);
  EXPECT_EQ(ids().items().size(), 301U);
  Read(text + "v,1,1\r\n");
  EXPECT_EQ(ids().items().size(), 0U);
  EXPECT_EQ(Notice(), "boiler.ids, line 302: The file holds more than 301 IDs.");
}

TEST_F(NamesTest, AreGoneWithAFileThatCannotBeRead) {
  main().ReadIDItems("/home/user/work/gone.ids");
  EXPECT_EQ(Names(), "");
  EXPECT_EQ(Notice(), "\"/home/user/work/gone.ids\" could not be read: there is no such file.");
  EXPECT_EQ(Version(), "Unknown revision");
  Read("Flow,10,2\r\n");
  world.disk().Forbid(kIds);
  main().ReadIDItems(kIds);
  EXPECT_EQ(Names(), "");
  EXPECT_EQ(Notice(),
            "\"" + std::string(kIds) + "\" could not be read: you do not have the permission.");
}

TEST_F(NamesTest, AreNotMissedWithoutAPath) {
  main().ReadIDItems("/home/user/work/gone.ids");
  main().ReadIDItems("");
  EXPECT_EQ(Names(), "");
  EXPECT_EQ(Notice(), "");
}

// --- Error texts ---

TEST_F(NamesTest, ErrorTextsAreThoseOfTheProject) {
  world.disk().Put(kErrors, "255 Fan failure\r\n7   Low  water \r\n");
  main().trvProject.AddFileToProject("erc", kErrors);
  EXPECT_EQ(Texts(), "7=Low  water; 255=Fan failure");
  EXPECT_EQ(Notice(), "");
}

TEST_F(NamesTest, ErrorTextsStandBesideTheIdFileOfTheOptions) {
  world.disk().Put("/usr/share/tarnlink/default.erc", "1 Shipped\r\n");
  EXPECT_EQ(Texts(), "1=Shipped");
  world.disk().Put(kErrors, "2 Own\r\n");
  options().txt_ZOLTIDDef.Text = kIds;
  EXPECT_EQ(Texts(), "2=Own");
}

TEST_F(NamesTest, ErrorTextsAreNotMissedBesideTheIdFile) {
  for (const char* path : {kIds, "ids", "a", ""}) {
    options().txt_ZOLTIDDef.Text = path;
    EXPECT_EQ(Texts(), "") << path;
    EXPECT_EQ(Notice(), "") << path;
  }
}

TEST_F(NamesTest, ErrorTextsOfTheProjectAreMissed) {
  main().trvProject.AddFileToProject("erc", kErrors);
  EXPECT_EQ(Texts(), "");
  EXPECT_EQ(Notice(), "\"" + std::string(kErrors) + "\" could not be read: there is no such file.");
}

TEST_F(NamesTest, ErrorTextsReadBeforeABadLineStay) {
  main().trvProject.AddFileToProject("erc", kErrors);
  world.disk().Put(kErrors, "1 One\r\n256 x\r\n2 Two\r\n");
  EXPECT_EQ(Texts(), "1=One");
  EXPECT_EQ(Notice(), "boiler.erc, line 2: \"256\" is not between 0 and 255.");
  world.disk().Put(kErrors, "1 One\r\n3 Three\r\nword\r\n");
  EXPECT_EQ(Texts(), "1=One; 3=Three");
  EXPECT_EQ(Notice(), "boiler.erc, line 3: No text stands behind the code.");
}

// --- The entries of the menu ---

TEST_F(NamesTest, AnIdFileIsAddedToTheProjectAndRead) {
  world.disk().Put(kIds, "Flow,10,2\r\n");
  world.dialogs().ExpectOpenFile("Open").Give(kIds);
  main().mnuAddIDFile.Press();
  EXPECT_EQ(world.dialogs().last_file_request().filter, "ID File (*.ids)|*.ids");
  EXPECT_EQ(world.dialogs().last_file_request().file_name, "");
  EXPECT_EQ(world.dialogs().last_file_request().folder, kFolder);
  EXPECT_EQ(main().trvProject.FirstChild("ids"), kIds);
  EXPECT_EQ(Names(), "Flow");
  EXPECT_TRUE(main().ProjectChanged);
}

TEST_F(NamesTest, ASecondIdFileIsRefused) {
  main().trvProject.AddFileToProject("ids", kIds);
  ExpectRefusal("First remove the current ID file from project.");
  main().mnuAddIDFile.Press();
  EXPECT_EQ(main().trvProject.FirstChild("ids"), kIds);
  EXPECT_EQ(Names(), "Pump");
  EXPECT_FALSE(main().ProjectChanged);
}

TEST_F(NamesTest, AnErrorDescriptionIsAddedToTheProjectAndNotRead) {
  world.dialogs().ExpectOpenFile("Open").Give(kErrors);
  main().mnuAddErrorDiscr.Press();
  EXPECT_EQ(world.dialogs().last_file_request().filter, "Error Discription File (*.erc)|*.erc");
  EXPECT_EQ(world.dialogs().last_file_request().folder, kFolder);
  EXPECT_EQ(main().trvProject.FirstChild("erc"), kErrors);
  EXPECT_EQ(Notice(), "");
  EXPECT_TRUE(main().ProjectChanged);
}

TEST_F(NamesTest, ASecondErrorDescriptionIsRefused) {
  main().trvProject.AddFileToProject("erc", kErrors);
  ExpectRefusal("First remove the current error description file from project.");
  main().mnuAddErrorDiscr.Press();
  EXPECT_FALSE(main().ProjectChanged);
}

TEST_F(NamesTest, ACancelOrAnEmptyNameAddsNothing) {
  for (MenuEntry* entry : {&main().mnuAddIDFile, &main().mnuAddErrorDiscr}) {
    world.dialogs().ExpectOpenFile("Open").Cancel();
    entry->Press();
    world.dialogs().ExpectOpenFile("Open").Give("");
    entry->Press();
  }
  EXPECT_FALSE(main().trvProject.FirstChild("ids").has_value());
  EXPECT_FALSE(main().trvProject.FirstChild("erc").has_value());
  EXPECT_FALSE(main().ProjectChanged);
  EXPECT_EQ(Names(), "Pump");
}

TEST_F(NamesTest, AFileThatStandsInTheProjectIsNotAddedTwice) {
  main().trvProject.AddFileToProject("wcr", kOther);
  world.dialogs().ExpectOpenFile("Open").Give(kOther);
  ExpectRefusal("\"other.ids\" stands in the project already.");
  main().mnuAddIDFile.Press();
  EXPECT_FALSE(main().ProjectChanged);
  EXPECT_EQ(Names(), "Pump");
}

TEST_F(NamesTest, AnIdFileOfTheProjectThatIsBadLeavesNoNames) {
  world.disk().Put(kIds, "nonsense\r\n");
  world.dialogs().ExpectOpenFile("Open").Give(kIds);
  main().mnuAddIDFile.Press();
  EXPECT_EQ(Names(), "");
  EXPECT_EQ(Notice(), "boiler.ids, line 1: The ID is missing.");
  EXPECT_TRUE(main().ProjectChanged);
}

}  // namespace
}  // namespace tarnlink
