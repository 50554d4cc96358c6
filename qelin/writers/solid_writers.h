// The writers of solids and pipe work: each fills its object from the entity's geometry (and,
// for fittings, its tag), lengths in metres. A writer that cannot read the geometry leaves the
// object's sizes as they were and returns false.
#pragma once

#include "writers/entity_writer.h"

#include <arx/arx.h>

QelEntityWriterFn QelWriteCylinder; // also a Flange of flat caps
QelEntityWriterFn QelWritePipe;     // a circle with thickness
QelEntityWriterFn QelWriteCone;
QelEntityWriterFn QelWriteSphere;
QelEntityWriterFn QelWriteTorus;
QelEntityWriterFn QelWriteElbow;
QelEntityWriterFn QelWriteReducingElbow;
QelEntityWriterFn QelWriteReducer;
QelEntityWriterFn QelWriteValve;
QelEntityWriterFn QelWritePipeTee;
QelEntityWriterFn QelWritePipeFlange;
