// The export driver: the process option, the entities in scope, and the whole file in one pass:
// entities, groups, layers, the layer manager, coordinate systems, the view, model space and the
// header. The one owner of the numbering of objects, which starts at 0 and runs in step with
// the library's.
#pragma once

class QelOutObject;

// Runs the export the dialog has just prepared: the file name from "LastExportDir", the process
// option from "ExportProcessMethod" (asked when it can't be read).
void runExport(QelOutObject& out);
// Every object from the drawing alone.
void exportWithoutReference(QelOutObject& out);
// Objects that tagged entities came from are read back from their files and changed.
void exportWithReference(QelOutObject& out);
