// The whole database interface.
#pragma once

#include "orin/design_objects.h"
#include "orin/enums.h"
#include "orin/handles.h"
#include "orin/index.h"
#include "orin/observers.h"
#include "orin/orin_pi.h"
#include "orin/records.h"
#include "orin/result.h"
#include "orin/snapshot.h"
#include "orin/string.h"
#include "orin/uid_manager.h"
#include "orin/views.h"
