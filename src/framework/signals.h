// How the program answers the signals that ask it to stop.
#pragma once

// Installs one handler for SIGINT, SIGABRT, SIGTERM and SIGQUIT. SIGQUIT interrupts the shell's read and
// makes it prompt anew; each of the others ends the process at once, by SIGINT, with no destructor run.
void InstallSignalHandler();
