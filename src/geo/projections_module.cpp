#include "geo/proj_projections.h"

// What a program looks up in the module, once. The caller owns the result.
extern "C" __attribute__((visibility("default"))) tarvo::Projections* tarvo_make_projections_1()
{
    return new tarvo::ProjProjections;
}
