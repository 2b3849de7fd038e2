// The language of the tests on the settings dialog of a Location: a user who double clicks a name
// box and fills in the dialog, and what the dialog and the screen then show, as text.
//
//   Begin(kZoltProtocol, 1);
//   OpenSettings(1);
//   form().optSelectByte.Choose(kBoth);
//   EXPECT_EQ(Chosen(), "Class, Both, Unsigned Word, Hexadecimal");
//   Ok();
#pragma once

#include <string>
#include <vector>

#include "form/edit_fixture.h"

namespace tarnlink {

// All of a record in one line.
std::string RecordText(const Location& location);

class SettingsTest : public EditTest {
 protected:
  // Starts the program under that protocol, with so many Locations that nobody has defined yet.
  void Begin(int protocol, int locations);
  // The same, with these Locations, whose boxes say so.
  void BeginWith(int protocol, const std::vector<Location>& locations);
  void Define(int index, const Location& location);

  // --- Names ---

  // Four variables: zero (word) at F100, Table (byte, 4 long) at F102, alpha (byte) at F106, sbBeta
  // (signed byte) at F107; the XMega has them at F200.
  void LoadAtmegaMap();
  void LoadXmegaMap();
  // The bytes ubFlow FE20 and Tank 0123, the bits lamp FE21.3 and Heat FE21.7.
  void LoadNecListing();
  // Temperature 001A of class 3 high byte, Status 002F without class low byte, flow 0010 of class 2
  // both bytes. The revision is "R1.2".
  void ReadIds();

  // --- The user ---

  frm_Settings& form() { return program().settings; }
  // A double click on the name box.
  void OpenSettings(int index) { main().RAM_LOC_TEXT.DblClick(index); }
  void Ok() { form().cmd_Ok.Press(); }
  void CancelSettings() { form().cmd_Cancel.Press(); }
  // Opens the dialog and confirms what it shows.
  void Confirm(int index);
  // Types into a box and leaves it.
  static void Type(TextBox& box, const std::string& text);
  // Picks the row with that text.
  void PickName(const std::string& name);
  ScriptedDialog& ExpectNoFunction();
  ScriptedDialog& ExpectBlockTooLong();

  // --- What can be seen ---

  bool IsOpen() { return form().form.Visible; }
  // The names of all controls that are disabled, with a blank between them.
  std::string Disabled();
  // The captions of the buttons that are set: "Memory Location, Msb, Bit, Decimal".
  std::string Chosen();
  // "1A 26 .3": the two addresses and the bit.
  std::string Address();
  // The rows of names with their data: "alpha=2 beta=3".
  std::string Names();
  std::string Record(int index) { return RecordText(main().Locations[index]); }
  // The colours of name box and value box: "yellow yellow".
  std::string Colours(int index);
};

}  // namespace tarnlink
