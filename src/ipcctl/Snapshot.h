// Pictures saved as JPEG.
#pragma once

#include <chrono>
#include <string>

#include "ipcctl/Av.h"

/// Saves a picture as "YYYYMMDD_hhmmss_mmm.jpg" in the directory, with a number added when there is one of this name.
/// The file is there only once it is whole. Returns its path; empty when it can not be saved.
std::string saveSnapshot(const AVFrame& frame, const std::string& directory,
                         std::chrono::system_clock::time_point time);
