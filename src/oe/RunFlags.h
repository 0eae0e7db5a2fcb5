// RunFlags.h: the flags by which a run is asked to end, and the one by which it tells whether it did.
#pragma once

struct RunFlags {
    bool stopAfterEmail = false;  // end the export after the e-mail being saved
    bool stopAfterFolder = false; // end an all-folders run after the folder being exported
    bool stopRequested = false;   // the user asked, as opposed to the program's own abort
    bool clientLost = false;      // it has stopped answering: nothing more is asked of it in this run
    bool closing = false;         // the window is to close: nobody waits for what only a user waits for
    bool runCompleted = false;    // set by whoever starts a run, cleared by a run that ends early
};
