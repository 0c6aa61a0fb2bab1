// The host's face in one include: all that the plug-in asks of a CAD host, and all that a host has to bring.
#pragma once

#include "host/host_api_database.h"
#include "host/host_api_documents.h"
#include "host/host_api_lisp.h"
#include "host/host_api_types.h"
#include "host/host_api_ui.h"
