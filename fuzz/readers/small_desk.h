// The main form and the options on a fake world, for targets that load something into them. Made
// once: making it takes longer than any run.
#pragma once

#include "monitor/frm_main.h"
#include "monitor/frm_options.h"
#include "support/fake_world.h"

namespace tarnlink {

struct SmallDesk {
  FakeWorld world;
  frm_Main main{world};
  frm_Options options{world, main};
};

// The desk as it was at first: nothing of another run may decide what comes of this one.
SmallDesk& CleanDesk();

}  // namespace tarnlink
