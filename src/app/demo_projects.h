// The sample projects that ship beside the program ("demo" next to the
// executable) and the copies the program opens, in the "demo" folder of the
// application data folder, where a user may change and save them.
#pragma once

#include <string>

// The folder of shipped demo projects beside an executable in `exeFolder`.
std::string shippedDemoFolder(const std::string& exeFolder);

// Copies every ".pwc" file of `sourceFolder` into `targetFolder` (created
// when missing) where the target has no such file or an older one. A
// missing source folder copies nothing; a file that cannot be copied is
// left out. Returns the number of files copied.
int deployDemoProjects(const std::string& sourceFolder, const std::string& targetFolder);
