#pragma once

namespace tarvo {

// Readers see the files of this computer and nothing else: GDAL's network file systems and its HTTP client refuse
// everything, and PROJ fetches no grids. For the whole process.
void allow_local_files_only();

} // namespace tarvo
