#include "targets.h"

#include <cstdint>
#include <cstdlib>
#include <iostream>

// What libFuzzer calls for every input. One program serves all targets: the environment's TARVO_FUZZ_TARGET names the
// one to run.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const char* const name = std::getenv("TARVO_FUZZ_TARGET");
    const tarvo::FuzzTarget* const target = tarvo::find_fuzz_target(name != nullptr ? name : "");
    if (target == nullptr) {
        std::cerr << "TARVO_FUZZ_TARGET must be one of:";
        for (const tarvo::FuzzTarget& known : tarvo::fuzz_targets()) std::cerr << ' ' << known.name;
        std::cerr << '\n';
        std::exit(2);
    }
    target->take({reinterpret_cast<const char*>(data), size});
    return 0;
}
