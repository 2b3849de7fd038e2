#include "ui/link_tool.h"

#include "ui/on_demand.h"

namespace tarnlink {

LinkTool::LinkTool(frm_Main& main, LinkRecord& record, MainWindow& window)
    : health(main.platform(), record), trace(main.platform(), record) {
  health.Ages = [&main] { return AgesOf(main); };
  health.cmdTrace.Click = [this] { trace.Show(); };
  health.Load();
  panel_ = std::make_unique<LinkPanel>(health);
  window.AddBelowStatusBar(panel_.get());
  MakeOnDemand(trace.form, [this, &main, &window] {
    trace_window_ = std::make_unique<LinkTraceWindow>(trace, main.platform().settings(), &window);
  });
  main.mnuLinkHealth.Checked = health.form.Visible;
  main.mnuLinkHealth.Click = [this, &main] {
    health.form.Visible ? health.Hide() : health.Show();
    main.mnuLinkHealth.Checked = health.form.Visible;
  };
  main.mnuLinkTrace.Click = [this] { trace.Show(); };
}

LinkTool::~LinkTool() = default;

std::vector<ValueAge> AgesOf(frm_Main& main) {
  const std::chrono::microseconds now = main.platform().clock().Elapsed();
  std::vector<ValueAge> ages;
  for (int i = 1; i <= main.MaxId; ++i) {
    if (!main.IsShown(i) || !main.RAM_LOC_VAL.Has(i)) continue;
    const TextBox& box = main.RAM_LOC_VAL(i);
    const auto age = box.AnsweredAt ? now - *box.AnsweredAt : std::chrono::microseconds(-1);
    ages.push_back({.index = i,
                    .name = main.RAM_LOC_TEXT(i).Text,
                    .seconds = std::chrono::duration<double>(age).count(),
                    .is_old = box.IsOld});
  }
  return ages;
}

}  // namespace tarnlink
