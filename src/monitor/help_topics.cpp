#include "monitor/help_topics.h"

#include "common/paths.h"

namespace tarnlink {

HelpTopics::HelpTopics(frm_Main& main) : main_(main) {
  main_.M_HelpTopics.Click = [this] { M_HelpTopics(); };
}

void HelpTopics::M_HelpTopics() {
  const std::string page = JoinPath(main_.platform().files().DataFolder(), "HELP.HTML");
  if (main_.platform().shell().OpenFile(page)) return;
  main_.platform().dialogs().MessageBox(
      {.text = "The help cannot be shown.",
       .title = std::string(kProgramTitle),
       .icon = Icon::kExclamation,
       .detail = "Nothing on this machine opens " + page + ", or it is not there."});
}

}  // namespace tarnlink
