#pragma once

namespace spectrane {

/// The program entry: what the command line asks for, file types, language font, main window, New File guide.
/// The result is the exit status.
int Main(int argc, char** argv);

}  // namespace spectrane
