#include "monitor/help_topics.h"

#include "common/paths.h"
#include "monitor/help_chapters.h"

namespace tarnlink {

HelpTopics::HelpTopics(frm_Main& main) : main_(main) {
  main_.M_HelpTopics.Click = [this] { M_HelpTopics(); };
}

void HelpTopics::M_HelpTopics() { Open(kHelpStart); }

void HelpTopics::Open(std::string_view page) {
  const std::string path = JoinPath(main_.platform().files().DataFolder(), std::string(page));
  if (main_.platform().shell().OpenFile(path)) return;
  main_.platform().dialogs().MessageBox(
      {.text = "The help cannot be shown.",
       .title = std::string(kProgramTitle),
       .icon = Icon::kExclamation,
       .detail = "Nothing on this machine opens " + path + ", or it is not there."});
}

}  // namespace tarnlink
