#include "fuzz/forms/forms.h"
#include "fuzz/forms/monitor_user.h"
#include "fuzz/forms/seed_text.h"

namespace tarnlink {
namespace {

constexpr const char* kFolder = "/home/user/work/";

// A file of each kind that a project can hold, as small as it can be.
void PutFiles(FakeWorld& world, std::string_view other) {
  FakeFiles& disk = world.disk();
  const std::string folder = kFolder;
  disk.Put(folder + "a.wcr",
           "255\r\n\"L\",0,3,\"01A0\",0,\"Flow\",\"v\",0,0,0,0,\"0\",0,100,600,100,1000,\"0\"\r\n");
  disk.Put(folder + "a.par", "5 1 2\r\n");
  disk.Put(folder + "a.ids", "*R1.2\r\nflow,10,2\r\n");
  disk.Put(folder + "a.erc", "*R1\r\n1,no flame\r\n");
  disk.Put(folder + "a.map", "__cpu_name = ATmega64\r\nENTRY LIST\r\nzero  DATA  00000100\r\n");
  disk.Put(folder + "a.grp", other);
  disk.Put(folder + "b.wcr", other);
  disk.Put(folder + "b.prj", other);
}

void RunProject(std::string_view bytes) {
  FuzzInput input(bytes);
  MonitorUser user(input, input.Below(kProtocolCount));
  PutFiles(user.world, input.ShortText());
  std::vector<std::string> paths;
  for (const char* name : {"a.wcr", "a.par", "a.ids", "a.erc", "a.map", "a.grp", "b.wcr", "b.prj",
                           "new.prj", "none.wcr", "new.wcr", "x.map", ""}) {
    paths.push_back(*name == '\0' ? "" : kFolder + std::string(name));
  }
  FormDriver& driver = user.driver;
  driver.Offer(paths);
  frm_Main& main = user.monitor.main;
  main.ShowParameters = main.ShowGraphic = [] {};
  driver.Form(main.form);
  driver.Add(main.mnuNewProject, main.mnuOpenProject, main.mnuSaveProject, main.mnuAddTarnLinkFile,
             main.mnuAddParameterFile, main.mnuAddGraphFile, main.mnuAddErrorDiscr,
             main.mnuAddIDFile, main.mnuAddNecMap, main.mnuRefresh, main.mnuViewProjectWindow,
             main.M_fileopen, main.M_filesave(0), main.M_filesave(1), main.M_NewScreen,
             main.M_fileHist(0), main.M_fileHistPrj(0), main.Toolbar1(1), main.Toolbar1(6));
  const auto with_node = [&](const std::function<void(const std::string& key)>& use) {
    const auto nodes = main.trvProject.Nodes();
    if (!nodes.empty()) use(nodes[input.Byte() % nodes.size()].key);
  };
  driver.Do([&, with_node] { with_node(main.trvProject_DblClick); });
  driver.Do([&, with_node] { with_node(main.trvProject_DeleteKey); });
  driver.Do([&] { main.trvProject_FilesDropped({driver.Path(), driver.Path()}); });
  driver.Do([&] { main.form.FileDropped(driver.Path()); });
  driver.Show(main.lbl_MapNotice, main.lbl_IdNotice);
  driver.Check = [check = driver.Check, &main] {
    check();
    Claim(main.trvProject.Count() < 200, "a tree has what was added");
  };
  user.Run();
}

void RunGenParFile(std::string_view bytes) {
  FuzzInput input(bytes);
  MonitorUser user(input, kZoltProtocol);
  user.Screen(4);
  user.driver.Offer({"/home/user/work/a.par", "/home/user/none/a.par", ""});
  user.AddRun();
  frm_Main& main = user.monitor.main;
  user.driver.Add(main.mnuGenParaFile);
  frmGenParFile& form = user.monitor.gen_par_file;
  user.driver.Form(form.form, true);
  user.driver.Add(form.chkClass5, form.chkClass7EE, form.chkClass7RAM, form.cmdSave,
                  form.cmdCancel);
  user.driver.Show(form.lblCount);
  user.driver.Guard([&] {
    for (int i = 1; i <= main.MaxId; ++i) {
      if (main.Locations[i].Specification == 1) main.Locations[i].Class = 5;
    }
    main.Toolbar1(2).Press();
  });
  user.Run();
}

std::vector<std::string> ProjectSeeds() {
  using namespace seed;
  const std::string begin =
      "\1\x0A"
      "\"L\",0,3,\"0";
  std::vector<std::string> seeds;
  for (int entry = 3; entry < 9; ++entry) {
    seeds.push_back(begin + Act(entry) + File(entry - 3) + Act(2) + File(8) + Act(19, "\3") +
                    Act(20, "\2"));
  }
  seeds.push_back(begin + Act(1) + File(7) + Act(0) + Yes());
  seeds.push_back(begin + Act(11) + File(0) + Act(13) + File(10) + Act(12) + Act(15));
  seeds.push_back(begin + Act(17) + Act(14) + Yes() + File(10) + Act(22, "\6") + Act(21, "\1\2"));
  return seeds;
}

std::vector<std::string> GenParSeeds() {
  using namespace seed;
  const std::string screen("\2\x87\x10\0\x86\x12\0\x41\x13\0", 10);
  const std::string poll = Wait(2) + Reply();
  return {screen + Times(4, poll) + Act(1) + Act(4) + Act(5) + Act(8) + File(0) + Yes(),
          screen + poll + Act(1) + Act(4) + Act(5) + Act(6) + Act(7) + Act(8) + File(1) + Act(9)};
}

}  // namespace

FuzzTarget ProjectFormTarget() { return {"project_form", RunProject, ProjectSeeds}; }
FuzzTarget GenParFileFormTarget() { return {"gen_par_file_form", RunGenParFile, GenParSeeds}; }

}  // namespace tarnlink
