// The shared services every screen calls: settings and language, record ids and the delete
// guard, rights, the dates of the Esercizio and the holiday calendar, files, small helpers, and
// the screens the logic opens by name.
#pragma once

#include "core/calendario.h"
#include "core/diritti.h"
#include "core/esercizio.h"
#include "core/file.h"
#include "core/impostazioni.h"
#include "core/record.h"
#include "core/registro_schermi.h"
#include "core/varie.h"
