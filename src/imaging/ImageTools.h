#pragma once

// The whole of this room's picture operations.
#include "imaging/Adjustments.h"   // IWYU pragma: export
#include "imaging/Caption.h"       // IWYU pragma: export
#include "imaging/CropGeometry.h"  // IWYU pragma: export
#include "imaging/CropScale.h"     // IWYU pragma: export
#include "imaging/Effects.h"       // IWYU pragma: export
#include "imaging/ImageFile.h"     // IWYU pragma: export
#include "imaging/Render.h"        // IWYU pragma: export
