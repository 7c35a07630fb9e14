#pragma once

#include "environment/set_up.h"
#include "platform/machine.h"
#include "platform/user_interface.h"

namespace qvrcom::desktop {

struct FirstStartParts {
  platform::UserInterface& ui;
  const platform::Machine& machine;
  const platform::Files& files;
};

// Makes a fresh machine ready for the suite, and puts back what has gone from one that was set up before:
// both when the user agrees. What cannot be used or lies in the place of something else is named and left
// alone. On a complete machine it adds what a newer program needs, silently. False when the suite cannot run
// here; a box has said why.
bool prepare_machine(const FirstStartParts& parts, environment::SetUp set_up,
                     const environment::MachineFolders& folders);

}  // namespace qvrcom::desktop
