#pragma once

// Every public header of corvanta::importer, which reads model files into a document.

#include "corvanta/importer/NImportError.h"
#include "corvanta/importer/NUpAxis.h"
#include "corvanta/importer/deform/NDeformer.h"
#include "corvanta/importer/formats.h"
#include "corvanta/importer/import.h"
#include "corvanta/importer/limits.h"
