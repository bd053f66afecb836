#pragma once

#include <string>
#include <vector>

// The processes of this system in the form that wmic prints into a pipe, from a
// Toolhelp snapshot: the line "Caption", then the image name of each process in
// the order of the snapshot, each line ended by CR CR LF. A snapshot that can't
// be taken gives the header line alone. Windows only.
std::string toolhelpCaptionList();

// That form for the given image names, in UTF-8. A name that comes with its
// folder is cut to its last component (after "\" or "/"); an empty name is left out.
std::string captionListOf(const std::vector<std::wstring> &imageNames);
