// Defining a Location: the double click on its name box, and what OK, Cancel and Delete Location of
// the settings dialog do.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "monitor/edit_history.h"
#include "monitor/frm_main.h"
#include "monitor/frm_settings.h"
#include "monitor/object_commands.h"

namespace tarnlink {

class LocationSettings {
 public:
  // Binds the double click and the dialog's buttons. All outlive it.
  LocationSettings(frm_Main& main, frm_Settings& settings, ObjectCommands& objects,
                   EditHistory& history);

 private:
  // What a Location was before OK put it into a block.
  struct BlockMember {
    int index = 0;
    std::int16_t NumReg = 1;
    bool RegisterFollower = false;
    std::string FunctionCode;
    Colour name_colour = kWhite;
    Colour value_colour = kWhite;
  };

  void Open(int index);
  void ShowButtons(const Location& location);
  void ShowFields(const Location& location);
  void EnableForProtocol(const Location& location, bool is_new);
  void ShowFunction(const std::string& FunctionCode, bool is_new);
  static bool IsNew(const Location& location);
  void AllowChanges();

  void cmd_Ok();
  void cmd_Cancel();
  void cmdDeleteLocation();

  void StoreValue(Location& location);
  void StoreScanning(Location& location);
  void StoreNames(Location& location);
  std::string NameToolTip(const Location& location) const;
  void ShowOnScreen(const Location& location);
  void StoreBlock();
  void TakeBackBlock();
  BlockMember MemberOf(int index);
  int BlockLength() const;
  bool IsBlockTooLong() const;

  void KeepColours(int index);
  void GiveColoursBack(int index);
  void SetColour(int index, Colour colour);
  Location& Target() const { return main_.Locations[main_.SelectedLocation]; }

  frm_Main& main_;
  frm_Settings& form_;
  ObjectCommands& objects_;
  EditHistory& history_;
  // The boxes' colours before they were marked.
  Colour name_colour_ = kWhite;
  Colour value_colour_ = kWhite;
  // The block that the last OK has stored, while the dialog stays open.
  std::vector<BlockMember> block_;
};

}  // namespace tarnlink
