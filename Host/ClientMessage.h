#pragma once

// What a host owes a run is part of the contract; the host finds it under this name.
#include "QuenFoundation/QuenSourceControlRun.h" // IWYU pragma: export
