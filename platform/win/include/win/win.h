// The Windows and MFC subset of the host, in one include.
#pragma once

#include <win/cfile.h>
#include <win/controls.h>
#include <win/cstring.h>
#include <win/cursor.h>
#include <win/cwnd.h>
#include <win/dialog.h>
#include <win/errors.h>
#include <win/files.h>
#include <win/format.h>
#include <win/msgbox.h>
#include <win/pickers.h>
#include <win/pointers.h>
#include <win/presenter.h>
#include <win/registry.h>
#include <win/resource.h>
#include <win/strings.h>
#include <win/transcript.h>
#include <win/types.h>
#include <win/window.h>
