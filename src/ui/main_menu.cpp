#include "ui/main_menu.h"

#include <initializer_list>

#include "ui/binders.h"
#include "ui/mnemonics.h"

namespace tarnlink {

namespace {

QMenu* AddMenu(QMenuBar* bar, MenuEntry& entry) {
  QMenu* menu = bar->addMenu(QString());
  menu->setToolTipsVisible(true);  // why an entry is grey
  Bind(menu->menuAction(), entry);
  KeepMnemonics(menu);
  return menu;
}

QAction* AddEntry(QMenu* menu, MenuEntry& entry) {
  QAction* action = menu->addAction(QString());
  Bind(action, entry);
  return action;
}

void AddEntries(QMenu* menu, std::initializer_list<MenuEntry*> entries) {
  for (MenuEntry* entry : entries) AddEntry(menu, *entry);
}

// `digit` is that of the first entry.
void AddHistory(QMenu* menu, FixedArray<MenuEntry>& history, int digit) {
  menu->addSeparator();
  for (int i = history.first(); i <= history.last(); ++i) {
    QAction* entry = menu->addAction(QString());
    GiveDigit(menu, entry, digit++);
    BindPath(entry, history(i));
  }
}

void BuildFileMenu(QMenuBar* bar, frm_Main& main) {
  QMenu* menu = AddMenu(bar, main.M_file);
  AddEntry(menu, main.M_fileopen)->setShortcut(QKeySequence::Open);
  AddEntry(menu, main.M_filesave(0))->setShortcut(QKeySequence::Save);
  AddEntry(menu, main.M_filesave(1))->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_S);
  AddEntry(menu, main.M_NewScreen)->setShortcut(QKeySequence::New);
  menu->addSeparator();
  AddEntry(menu, main.mnuPrint)->setShortcut(QKeySequence::Print);
  AddEntry(menu, main.mnuPrintToFile);
  menu->addSeparator();
  AddEntry(menu, main.M_options);
  AddHistory(menu, main.M_fileHist, 1);
  AddHistory(menu, main.M_fileHistPrj, 2 + main.M_fileHist.last());
  menu->addSeparator();
  AddEntry(menu, main.M_exit)->setShortcut(Qt::CTRL | Qt::Key_Q);
}

void BuildEditMenu(QMenuBar* bar, frm_Main& main, const QList<QAction*>& tools) {
  QMenu* menu = AddMenu(bar, main.M_edit);
  AddEntry(menu, main.mnuUndo)->setShortcut(QKeySequence::Undo);
  AddEntry(menu, main.mnuRedo)
      ->setShortcuts({Qt::CTRL | Qt::Key_Y, Qt::CTRL | Qt::SHIFT | Qt::Key_Z});
  menu->addSeparator();
  for (const int button : {1, 4, 6}) menu->addAction(tools[button - 1]);
}

void BuildViewMenu(QMenuBar* bar, frm_Main& main) {
  QMenu* menu = AddMenu(bar, main.M_view);
  QAction* health = AddEntry(menu, main.mnuLinkHealth);
  health->setCheckable(true);
  health->setChecked(main.mnuLinkHealth.Checked);
  health->setShortcut(Qt::Key_F8);
  AddEntry(menu, main.mnuLinkTrace)->setShortcut(Qt::Key_F9);
}

void BuildToolsMenu(QMenuBar* bar, frm_Main& main) {
  QMenu* menu = AddMenu(bar, main.M_Tools);
  AddEntries(menu,
             {&main.M_Graphics, &main.M_ControlPanel, &main.mnuScanSlaves, &main.mnuWPConversion,
              &main.mnuSniffer, &main.mnuCfgCheck, &main.mnuLoadParameters, &main.mnuGenParaFile,
              &main.M_EE_DOWN, &main.M_EEPROM, &main.M_errgen});
}

void BuildProjectMenu(QMenuBar* bar, frm_Main& main) {
  QMenu* menu = AddMenu(bar, main.mnuProject);
  AddEntries(menu, {&main.mnuNewProject, &main.mnuOpenProject, &main.mnuSaveProject});
  menu->addSeparator();
  AddEntries(menu, {&main.mnuAddTarnLinkFile, &main.mnuAddParameterFile, &main.mnuAddGraphFile,
                    &main.mnuAddErrorDiscr, &main.mnuAddIDFile, &main.mnuAddNecMap});
  menu->addSeparator();
  AddEntry(menu, main.mnuRefresh);
  QAction* view = AddEntry(menu, main.mnuViewProjectWindow);
  view->setCheckable(true);
  view->setChecked(main.mnuViewProjectWindow.Checked);
}

void BuildHelpMenu(QMenuBar* bar, frm_Main& main) {
  QMenu* menu = AddMenu(bar, main.M_Help);
  QAction* topics = AddEntry(menu, main.M_HelpTopics);
  // Shown only: the key goes to the page of the window that it is pressed in, see `HelpKey`.
  topics->setShortcut(Qt::Key_F1);
  topics->setShortcutContext(Qt::WidgetShortcut);
  AddEntry(menu, main.M_About);
}

}  // namespace

void BuildMainMenu(QMenuBar* bar, frm_Main& main, const QList<QAction*>& tools) {
  BuildFileMenu(bar, main);
  BuildEditMenu(bar, main, tools);
  BuildViewMenu(bar, main);
  BuildToolsMenu(bar, main);
  BuildProjectMenu(bar, main);
  BuildHelpMenu(bar, main);
}

}  // namespace tarnlink
