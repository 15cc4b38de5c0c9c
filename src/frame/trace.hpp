// Debug messages. They are composed and discarded (dbg_trace): what refused a value shows in a debugger only.
#pragma once

#include "frame/frame.h"

#define KOVA_TRACE_ERROR(message) dbg_trace("[Error][%s %s:%d] " message, __func__, __FILE_NAME__, __LINE__)
