#include "QuenFoundation/QuenSourceControlDefinitions.h"
