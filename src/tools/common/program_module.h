#pragma once

#include <string>

namespace tarvo {

// A module of the program, loaded when it is first needed so that a start does not pay for its libraries. It lies
// beside the program or among the installed libraries. file_name: without a folder.

// Without loading it.
bool has_program_module(const std::string& file_name);

// Loads it and finds the function of that name. Throws std::runtime_error that says why it cannot.
void* program_module_function(const std::string& file_name, const char* function);

} // namespace tarvo
