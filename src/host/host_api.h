// The host API in one include: all that the plug-in needs from a CAD host, and all that a host must provide.
#pragma once

#include "host/host_api_database.h"
#include "host/host_api_documents.h"
#include "host/host_api_lisp.h"
#include "host/host_api_types.h"
#include "host/host_api_ui.h"
