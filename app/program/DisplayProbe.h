// displayAnswers: whether a window can be opened, found out before it is too late to do without.
#pragma once

namespace folivex {

/// A display that the environment names but that is not there (a terminal that outlived its
/// desktop, a job started with another person's environment) ends a program of windows with an
/// abort. This tries it in a child process, so that unattended work can go on without a window.
/// To be called before any application object is made and while there is one thread.
bool displayAnswers(int argc, char** argv);

} // namespace folivex
